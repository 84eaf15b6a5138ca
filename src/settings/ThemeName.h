#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// The resource that a theme name means: lower case, "_" for spaces and hyphens, known aliases resolved. So a label is
/// as good as the stored name.
std::string normalizedThemeName(std::string_view name);

} // namespace corvane
