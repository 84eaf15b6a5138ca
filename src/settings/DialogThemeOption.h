#pragma once

#include <array>
#include <string_view>

namespace corvane {

/// A dialog theme as it is offered: the label shown and the name stored in the settings.
struct DialogThemeOption {
    std::string_view label;
    std::string_view value;
};

/// In the order in which they are offered. Each value names a resource with the extension "json".
inline constexpr std::array<DialogThemeOption, 5> dialogThemeOptions{{
    {"Default", "default"},
    {"Light", "light"},
    {"Dark", "dark"},
    {"Chiseled Steel", "chiseled_steel"},
    {"Corvane", "corvane"},
}};

} // namespace corvane
