#pragma once

#include "ports/HiddenPageView.h"

#include <expected>
#include <mutex>
#include <string>

namespace corvane {

/// Serves the analytics page under the custom scheme, whatever the path. Every request is answered within its call, so
/// none has to be kept. Safe on any thread.
class AnalyticsURLSchemeHandler {
public:
    static constexpr const char* scheme = "corvane-analytics";
    static constexpr const char* pageAddress = "corvane-analytics://127.0.0.1/analytics.html";

    void setHtmlContent(std::string html);

    /// The page as it is now, or why there is none: a request without an address fails.
    std::expected<std::string, SchemeFailure> answer(const std::string& address) const;

private:
    mutable std::mutex lock_;
    std::string htmlContent_;
};

} // namespace corvane
