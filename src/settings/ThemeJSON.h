#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A theme file as it is written. The fields bear the names of their keys; each may be absent, and a group that is
/// absent is one whose members all are. Texts are CSS values that nobody has checked.
struct ThemeJSON {
    struct Colors {
        std::vector<std::string> background; // the stops of a gradient, of which three are used
        std::vector<std::string> card;       // shades, of which three are used
        std::optional<std::string> cardBorder;
        std::optional<std::string> listBackground;
        std::optional<std::string> text;
        std::optional<std::string> textMuted;
        std::optional<std::string> contentText;
        std::optional<std::string> contentBackground;
        std::optional<std::string> link;
        std::optional<std::string> buttonPrimary;
        std::optional<std::string> buttonSecondary;
        std::optional<std::string> buttonSecondaryText;
        std::optional<std::string> buttonDonate;
        std::optional<std::string> buttonDonateText;
        std::optional<std::string> buttonBevelLight;
        std::optional<std::string> buttonBevelDark;
        std::optional<std::string> buttonBevelDarkRight;
        std::optional<std::string> headingText;
        std::optional<std::string> headingTextShadow;

        bool operator==(const Colors&) const = default;
    };

    /// Numbers are points.
    struct Spacing {
        std::optional<std::int64_t> padding;
        std::optional<std::string> cardPadding;
        std::optional<std::int64_t> gap;
        std::optional<std::int64_t> borderRadius;
        std::optional<std::int64_t> buttonBorderRadius;

        bool operator==(const Spacing&) const = default;
    };

    struct Effects {
        std::optional<std::string> cardBoxShadow;
        std::optional<std::string> btnBoxShadow;

        bool operator==(const Effects&) const = default;
    };

    Colors colors;
    Spacing spacing;
    Effects effects;

    bool operator==(const ThemeJSON&) const = default;
};

/// Reads a theme file: a JSON object whose keys may all be missing; other keys are ignored. Empty when a member has a
/// wrong type, null included, or a number is not a JSON integer of 64 bits.
std::optional<ThemeJSON> decodeTheme(std::string_view bytes);

} // namespace corvane
