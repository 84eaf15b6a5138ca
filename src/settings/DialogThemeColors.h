#pragma once

#include "settings/Color.h"
#include "settings/ThemeJSON.h"

namespace corvane {

/// The palette of the dialogs that the native toolkit draws.
struct DialogThemeColors {
    Color background1; // the stops of a gradient
    Color background2;
    Color background3;
    Color card1; // shades, used one by one
    Color card2;
    Color card3;
    Color text;
    Color textMuted;
    Color headingText;
    Color link;
    Color buttonPrimary;
    Color buttonDonate;
    Color buttonDonateText;
    double cornerRadius = 0; // points
    double buttonCornerRadius = 0;

    bool operator==(const DialogThemeColors&) const = default;
};

/// The palette without any theme file. Safe to call on any thread.
const DialogThemeColors& defaultDialogColors();

/// The palette that a theme describes. A colour that is absent or cannot be read takes its default by itself.
DialogThemeColors resolvedDialogColors(const ThemeJSON& theme);

} // namespace corvane
