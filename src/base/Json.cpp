#include "base/Json.h"

#include <cmath>
#include <limits>

namespace corvane {
namespace {

/// Counts brackets and commas outside strings: one pass that keeps the parser from building a tree too deep to handle,
/// or many times larger than its text.
bool isTooMuch(std::string_view text, std::size_t deepest)
{
    std::size_t depth = 0;
    std::size_t values = 1;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > deepest || ++values > mostJsonValues)
                return true;
        } else if (c == ',') {
            if (++values > mostJsonValues)
                return true;
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return false;
}

} // namespace

std::optional<Json> parseJson(std::string_view text, std::size_t deepest)
{
    // The parser would take a null byte for the end of the text.
    if (text.contains('\0') || isTooMuch(text, deepest))
        return std::nullopt;
    auto document = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (document.is_discarded())
        return std::nullopt;
    return document;
}

const Json* member(const Json& value, std::string_view key)
{
    if (!value.is_object())
        return nullptr;
    const auto found = value.find(key);
    return found == value.end() ? nullptr : &*found;
}

const std::string* textOf(const Json* value)
{
    return value == nullptr ? nullptr : value->get_ptr<const std::string*>();
}

std::optional<std::int64_t> integerOf(const Json& number)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (number.is_number_unsigned()) {
        const auto value = number.get<std::uint64_t>();
        if (value > static_cast<std::uint64_t>(Limits::max()))
            return std::nullopt;
        return static_cast<std::int64_t>(value);
    }
    if (number.is_number_integer())
        return number.get<std::int64_t>();
    if (number.is_number_float()) {
        const double value = std::trunc(number.get<double>());
        // Both bounds are powers of two, so they are exact as doubles; NaN fails the comparison.
        if (!(value >= -0x1p63 && value < 0x1p63))
            return std::nullopt;
        return static_cast<std::int64_t>(value);
    }
    return std::nullopt;
}

std::string compactJson(const Json& document)
{
    return document.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace corvane
