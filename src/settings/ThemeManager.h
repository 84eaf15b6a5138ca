#pragma once

#include "ports/Resources.h"
#include "settings/DialogThemeColors.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Turns the name of a dialog theme into what the dialogs need. Keeps nothing: every call reads the theme file again.
/// Names are normalised first. A theme that is missing or unreadable gives way to the resource "default", that one to
/// the built-in defaults; no failure is reported.
class ThemeManager {
public:
    /// The resources must outlive this object.
    explicit ThemeManager(const Resources& resources) : resources_(resources) {}

    /// For dialogs that the native toolkit draws.
    DialogThemeColors dialogColors(std::string_view forTheme) const;

    /// For dialogs that are HTML pages: a style element for the page's head.
    std::string themeCSS(std::string_view forTheme) const;

private:
    std::optional<ThemeJSON> readTheme(std::string_view name) const;

    const Resources& resources_;
};

} // namespace corvane
