#pragma once

#include "base/Url.h"

#include <expected>
#include <functional>
#include <string>

namespace corvane {

/// Why a loopback server did not start. `domain` and `code` name the failure, as in "AnalyticsLocalHTTPServer", 2.
struct LoopbackFailure {
    std::string domain;
    int code = 0;
    std::string description;
};

/// Serves one page to this machine. Main thread only.
class LoopbackServer {
public:
    using Completion = std::function<void(std::expected<Url, LoopbackFailure>)>;

    virtual ~LoopbackServer() = default;

    /// Serves `html`, UTF-8, under any path from now on; a page that was served before goes first. `completion` is
    /// called once, on the main thread, with the page's address or the failure; never after the server is gone, nor
    /// after another start or a stop.
    virtual void startServer(std::string html, Completion completion) = 0;

    virtual void stopServer() = 0;
};

} // namespace corvane
