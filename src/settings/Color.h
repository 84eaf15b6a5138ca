#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// An sRGB colour. Components and opacity run from 0 to 1; they are not clamped, so who draws must expect values
/// beyond both ends, though always finite ones.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    static constexpr Color white() { return {1, 1, 1, 1}; }
    static constexpr Color black() { return {0, 0, 0, 1}; }
    static constexpr Color clear() { return {0, 0, 0, 0}; }

    bool operator==(const Color&) const = default;
};

/// Reads the colour notations that theme files use: "#RRGGBB", "#RRGGBBAA", "rgb(r, g, b)" and "rgba(r, g, b, opacity)"
/// with components from 0 to 255, "transparent". Spaces and tabs around it are ignored. Empty for every other text,
/// also for colour names, three-digit forms and variables.
std::optional<Color> parseCSSColor(std::string_view text);

/// "RRGGBB" or "RRGGBBAA" with or without a leading "#"; a middle grey for any other text. For literals.
Color colorFromHex(std::string_view text);

} // namespace corvane
