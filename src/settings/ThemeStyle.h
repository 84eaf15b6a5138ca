#pragma once

#include "settings/ThemeJSON.h"

#include <string>

namespace corvane {

/// A style element that gives HTML pages the theme as custom properties of the root: thirty of them in a fixed order.
/// A value is the theme's text as it is written, neither checked nor escaped: theme files are the program's own.
std::string themeStyleBlock(const ThemeJSON& theme);

} // namespace corvane
