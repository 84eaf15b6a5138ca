#include "browser/AllowedHosts.h"

#include "base/Text.h"

namespace corvane {

AllowedHosts::AllowedHosts(const Url& base) : names_{base.host()}, requiresHttps_(base.scheme() == "https") {}

bool AllowedHosts::containsHost(std::string_view host) const
{
    return !host.empty() && names_.contains(lowercased(host));
}

bool AllowedHosts::trustsOrigin(std::string_view origin) const
{
    const auto url = Url::parse(origin);
    if (!url || !url->isHttp() || !containsHost(url->host()))
        return false;
    return !requiresHttps_ || url->scheme() == "https";
}

std::string AllowedHosts::listText() const
{
    std::string text;
    for (const auto& name : names_) {
        if (!text.empty())
            text += ", ";
        text += '\'' + name + '\'';
    }
    return text;
}

} // namespace corvane
