#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// What native dialogs and HTML pages alike take for the members that a theme file leaves out. Where the two differ,
/// each has its own value.
namespace corvane::themedefaults {

inline constexpr std::array<std::string_view, 3> background{"#565B61", "#4B5057", "#40454B"};
inline constexpr std::array<std::string_view, 3> card{"#3D5063", "#476070", "#516375"};
inline constexpr std::string_view textMuted = "#d0d0d0";
inline constexpr std::string_view link = "#d0ecff";
inline constexpr std::string_view buttonPrimary = "#2F92F5";
inline constexpr std::string_view buttonDonate = "#F7D700";
inline constexpr std::int64_t borderRadius = 14;      // points
inline constexpr std::int64_t buttonBorderRadius = 8; // points

} // namespace corvane::themedefaults
