#pragma once

#include "catalogue/Site.h"
#include "ports/DefaultsStore.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The default under which the name of the service chosen last is kept.
inline constexpr std::string_view siteIndexKey = "siteIndex";

/// The first entry of this name; null when there is none.
const Site* findSite(const std::vector<Site>& sites, std::string_view service);

/// The name of the service chosen last, as long as the catalogue holds it.
std::optional<std::string> savedSiteID(const DefaultsStore& defaults, const std::vector<Site>& sites);

} // namespace corvane
