#pragma once

#include "ports/LoopbackServer.h"

#include <string>
#include <utility>

namespace corvane::testing {

/// A server that starts, or does not, when a test says so.
class ScriptedLoopbackServer final : public LoopbackServer {
public:
    void startServer(std::string page, Completion completion) override
    {
        html = std::move(page);
        completion_ = std::move(completion);
        ++starts;
    }
    void stopServer() override { completion_ = nullptr; }

    void succeed(const std::string& address) { complete(Url::parse(address).value()); }
    void fail() { complete(std::unexpected(LoopbackFailure{"AnalyticsLocalHTTPServer", 2, "Invalid listener port"})); }

    std::string html;
    int starts = 0;

private:
    void complete(std::expected<Url, LoopbackFailure> outcome)
    {
        if (const auto call = std::exchange(completion_, nullptr))
            call(std::move(outcome));
    }

    Completion completion_;
};

} // namespace corvane::testing
