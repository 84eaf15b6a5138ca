#include "settings/Color.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

namespace corvane {
namespace {

std::size_t codePointCount(std::string_view text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Six or eight characters of which the first is a hexadecimal digit. Digits count up to the first other character:
/// what they make is the whole number, not its upper part.
std::optional<Color> colorFromDigits(std::string_view digits)
{
    const auto count = codePointCount(digits);
    if (count != 6 && count != 8)
        return std::nullopt;
    std::uint32_t number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number, 16).ec != std::errc())
        return std::nullopt;

    if (count == 6)
        number = (number << 8U) | 0xFFU;
    const auto component = [number](unsigned shift) { return ((number >> shift) & 0xFFU) / 255.0; };
    return Color{component(24), component(16), component(8), component(0)};
}

/// The double nearest to a well-formed decimal number that from_chars calls out of range: 0 for one that is too small;
/// empty for one that is too large. Streams tell the two apart.
std::optional<double> tinyNumber(std::string_view text)
{
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double number = 0;
    return stream >> number ? std::optional(number) : std::nullopt;
}

/// A decimal number that fills the text: sign, fraction and exponent allowed; independent of the user's locale.
std::optional<double> decimalNumber(std::string_view text)
{
    // from_chars takes "-" but no "+"; "+-5" must not slip through.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size())
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return tinyNumber(text);
    // from_chars also knows "inf" and "nan", which are no decimal numbers.
    if (error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::string without(std::string_view removed, std::string_view text)
{
    std::string rest;
    for (auto at = text.find(removed); at != std::string_view::npos; at = text.find(removed)) {
        rest += text.substr(0, at);
        text.remove_prefix(at + removed.size());
    }
    return rest.append(text);
}

std::vector<std::string> piecesBetweenCommas(std::string_view text)
{
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const auto comma = std::min(text.find(','), text.size());
        if (comma > 0)
            pieces.emplace_back(trimmedBlanks(text.substr(0, comma)));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return pieces;
}

std::optional<Color> colorFromComponents(std::string_view text)
{
    const auto pieces = piecesBetweenCommas(without(")", without("rgb(", without("rgba(", text))));
    if (pieces.size() < 3)
        return std::nullopt;
    const auto red = decimalNumber(pieces[0]);
    const auto green = decimalNumber(pieces[1]);
    const auto blue = decimalNumber(pieces[2]);
    if (!red || !green || !blue)
        return std::nullopt;
    const auto opacity = pieces.size() > 3 ? decimalNumber(pieces[3]).value_or(1) : 1;
    return Color{*red / 255, *green / 255, *blue / 255, opacity};
}

} // namespace

std::optional<Color> parseCSSColor(std::string_view text)
{
    text = trimmedBlanks(text);
    if (text.starts_with('#'))
        return colorFromDigits(text.substr(1));

    const auto lower = lowercased(text);
    if (lower.starts_with("rgba(") || lower.starts_with("rgb("))
        return colorFromComponents(text);
    if (lower == "transparent")
        return Color::clear();
    return std::nullopt;
}

Color colorFromHex(std::string_view text)
{
    if (text.starts_with('#'))
        text.remove_prefix(1);
    return colorFromDigits(text).value_or(Color{0.5, 0.5, 0.5, 1});
}

} // namespace corvane
