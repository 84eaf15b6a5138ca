#pragma once

#include "async/TaskScope.h"
#include "base/Url.h"
#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::testing {

/// A server on 127.0.0.1 that answers each request with the bytes a test chooses, well-formed or not.
class RawServer {
public:
    struct Reply {
        std::string bytes;
        enum class Then { close, wait, reset } then = Then::close; // a connection that waits may ask again
        std::string again;                                         // sent after them until the client hangs up
        std::chrono::milliseconds pause{0};                        // before each of these
    };

    RawServer();

    Url url(std::string_view pathAndQuery) const;

    std::function<Reply(const std::string& request)> respond;

    std::string greeting;              // sent before the first request
    std::vector<std::string> requests; // head and body as they came
    int hangUps = 0;                   // connections that the client closed first

    static Reply ok(std::string_view body, std::string_view headers = {});
    static Reply redirect(int status, std::string_view location);

private:
    gboolean incoming(GSocketConnection* connection, GObject* source);
    Task<void> serve(GObjectPtr<GSocketConnection> connection);
    Task<bool> answer(GObjectPtr<GSocketConnection> connection, Reply reply);

    GObjectPtr<GSocketService> service_;
    guint16 port_ = 0;
    SignalConnection incoming_;
    TaskScope connections_;
};

} // namespace corvane::testing
