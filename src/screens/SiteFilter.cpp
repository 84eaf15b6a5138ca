#include "screens/SiteFilter.h"

#include "base/Text.h"

namespace corvane {

std::vector<std::size_t> filteredSites(const std::vector<Site>& sites, std::string_view text)
{
    const auto wanted = trimmed(text);
    std::vector<std::size_t> kept;
    kept.reserve(sites.size());
    for (std::size_t i = 0; i < sites.size(); ++i) {
        if (containsIgnoringCase(sites[i].service, wanted) || containsIgnoringCase(sites[i].description, wanted))
            kept.push_back(i);
    }
    return kept;
}

} // namespace corvane
