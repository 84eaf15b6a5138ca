#pragma once

#include "ports/Endpoints.h"

#include <string>
#include <string_view>

namespace corvane {

/// The page of the usage statistics as it is served: `resource` with its placeholders filled in, each wherever it
/// stands. "__GA4_DEBUG_MODE__" becomes false, "__TAG_URL__" and "__MEASUREMENT_ID__" become string literals of a
/// script, quotes included, and "__TAG_SOURCE__" what a content security policy has to allow for the tag.
std::string analyticsPage(std::string_view resource, const Endpoints& endpoints);

} // namespace corvane
