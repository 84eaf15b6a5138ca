#pragma once

#include <string_view>

namespace corvane {

/// The names that are posted to the whole program.
inline constexpr std::string_view showAboutNotification = "Corvane.showAbout";
inline constexpr std::string_view toggleURLModeNotification = "Corvane.toggleURLMode";

} // namespace corvane
