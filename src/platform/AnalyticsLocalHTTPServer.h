#pragma once

#include "platform/OnePageListener.h"
#include "ports/LoopbackServer.h"

#include <cstdint>
#include <memory>
#include <string>

namespace corvane {

/// Serves the page of the usage statistics from a thread of its own, which ends with a stop or with this object.
class AnalyticsLocalHTTPServer final : public LoopbackServer {
public:
    static constexpr const char* queueLabel = "hollisward.corvane.analytics-http";

    explicit AnalyticsLocalHTTPServer(std::string address = "127.0.0.1", OnePageListener::Limits limits = {});
    ~AnalyticsLocalHTTPServer() override;

    void startServer(std::string html, Completion completion) override;

    /// Waits for the thread, which never waits for a client.
    void stopServer() override;

    /// The page's address on a port, or the failure that there is none.
    static std::expected<Url, LoopbackFailure> pageAddress(std::uint16_t port);

private:
    class Queue;

    void started();

    std::string address_;
    OnePageListener::Limits limits_;
    Completion completion_; // empty once it has been called
    std::unique_ptr<Queue> queue_;
};

} // namespace corvane
