#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "screens/DialogStyleSheet.h"
#include "settings/Color.h"
#include "settings/Contrast.h"
#include "settings/DialogThemeColors.h"
#include "settings/ThemeJSON.h"
#include "settings/ThemeName.h"
#include "settings/ThemeStyle.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

namespace corvane::fuzz {
namespace {

bool isWithin(double value, double least, double most)
{
    return value >= least && value <= most; // false for NaN
}

std::array<double, 4> componentsOf(const Color& color)
{
    return {color.red, color.green, color.blue, color.opacity};
}

void requireColor(std::string_view text, const Color& color)
{
    const auto components = componentsOf(color);
    const bool isFinite = std::ranges::all_of(components, [](double value) { return std::isfinite(value); });
    require(isFinite, "a colour is made of finite numbers");
    require(parseCSSColor(trimmedBlanks(text)) == color, "blanks around a colour do not count");
    if (trimmedBlanks(text).starts_with('#')) {
        for (const auto value : components)
            require(isWithin(value, 0, 1), "the digits of a colour lie from 0 to 1");
        const auto byte = [](double value) { return std::lround(value * 255); };
        const auto digits = fmt::format("#{:02x}{:02X}{:02x}{:02X}", byte(color.red), byte(color.green),
                                        byte(color.blue), byte(color.opacity));
        require(parseCSSColor(digits) == color && colorFromHex(digits) == color, "digits written are digits read");
    }
    require(isWithin(contrastRatio(color, Color::black()), 1, 21.0001), "contrasts lie from 1 to 21");
    require(isWithin(contrastRatio(readableOn(color), composed(color, Color::black())), 1, 21.0001),
            "contrasts lie from 1 to 21");
}

/// The number that `text` begins with; it is taken off, and so is the character behind it.
double takeNumber(std::string_view& text)
{
    double number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    require(error == std::errc() && end != text.data() + text.size(), "a style sheet has numbers in its colours");
    text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
    return number;
}

void requireStyleSheet(std::string_view css)
{
    static constexpr std::string_view mark = "rgba(";
    require(!css.contains('$'), "every word of a style sheet is filled in");
    for (auto place = css.find(mark); place != std::string_view::npos; place = css.find(mark)) {
        css.remove_prefix(place + mark.size());
        for (int component = 0; component < 3; ++component)
            require(isWithin(takeNumber(css), 0, 255), "components are drawn from 0 to 255");
        require(isWithin(takeNumber(css), 0, 1), "opacities are drawn from 0 to 1");
    }
}

void requireTheme(const ThemeJSON& theme, const Json& document)
{
    require(decodeTheme(compactJson(document)) == theme, "a theme that is written is read again");
    const auto colors = resolvedDialogColors(theme);
    requireStyleSheet(dialogStyleSheet(colors));
    requireStyleSheet(releaseNotesReaderStyle(colors));
    requireStyleSheet(notificationReaderStyle(colors));
    const auto block = themeStyleBlock(theme);
    require(isValidUtf8(block) && block.starts_with("<style id=\"theme-vars\">:root{") && block.ends_with("}</style>"),
            "a style block is one element of text");
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto theme = decodeTheme(bytes);
    const auto document = theme ? parseJson(bytes) : std::nullopt;
    require(theme.has_value() == document.has_value(), "a theme is JSON");
    if (theme)
        requireTheme(*theme, *document);

    // The same bytes as the value of a colour and as a name.
    if (const auto color = parseCSSColor(bytes))
        requireColor(bytes, *color);
    ThemeJSON colored;
    colored.colors.background = {std::string(bytes), std::string(bytes)};
    colored.colors.text = bytes;
    colored.colors.buttonPrimary = bytes;
    requireStyleSheet(dialogStyleSheet(resolvedDialogColors(colored)));
    const auto name = normalizedThemeName(bytes);
    require(normalizedThemeName(name) == name && !name.contains(' '), "a theme has one name");
}

} // namespace corvane::fuzz
