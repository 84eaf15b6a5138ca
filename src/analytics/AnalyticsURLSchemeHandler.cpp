#include "analytics/AnalyticsURLSchemeHandler.h"

#include <utility>

namespace corvane {

void AnalyticsURLSchemeHandler::setHtmlContent(std::string html)
{
    const std::scoped_lock guard(lock_);
    htmlContent_ = std::move(html);
}

std::expected<std::string, SchemeFailure> AnalyticsURLSchemeHandler::answer(const std::string& address) const
{
    if (address.empty())
        return std::unexpected(SchemeFailure{.domain = "AnalyticsURLSchemeHandler", .code = 1});
    const std::scoped_lock guard(lock_);
    return htmlContent_;
}

} // namespace corvane
