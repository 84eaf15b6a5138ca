#include "catalogue/SavedSite.h"

#include <algorithm>

namespace corvane {

const Site* findSite(const std::vector<Site>& sites, std::string_view service)
{
    const auto found = std::ranges::find(sites, service, &Site::service);
    return found == sites.end() ? nullptr : &*found;
}

std::optional<std::string> savedSiteID(const DefaultsStore& defaults, const std::vector<Site>& sites)
{
    auto service = defaults.string(siteIndexKey);
    if (!service || findSite(sites, *service) == nullptr)
        return std::nullopt;
    return service;
}

} // namespace corvane
