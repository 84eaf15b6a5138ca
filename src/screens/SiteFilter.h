#pragma once

#include "catalogue/Site.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvane {

/// The places in `sites`, in order, of the services whose name or description contains the trimmed `text`, whatever
/// its case. An empty text keeps them all.
std::vector<std::size_t> filteredSites(const std::vector<Site>& sites, std::string_view text);

} // namespace corvane
