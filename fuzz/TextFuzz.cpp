#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"

#include <algorithm>

#include <fmt/format.h>

namespace corvane::fuzz {
namespace {

std::size_t codePoints(std::string_view text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

void requireTrimming(std::string_view bytes)
{
    const auto core = trimmed(bytes);
    require(bytes.contains(core) && trimmed(core) == core, "trimmed text has nothing left to trim");
    require(leadingWhiteSpace(core) == 0, "trimmed text begins with no white space");
    require(leadingWhiteSpace(bytes) <= bytes.size(), "white space ends with the text");
    require(trimmedBlanks(trimmedBlanks(bytes)) == trimmedBlanks(bytes), "blanks are trimmed once and for all");
}

void requireRepair(std::string_view bytes)
{
    const auto repaired = repairedUtf8(bytes);
    require(isValidUtf8(repaired), "repaired text is UTF-8");
    require((repaired == bytes) == isValidUtf8(bytes), "well-formed text, and no other, needs no repair");
    const auto document = parseJson(compactJson(Json(repaired)));
    require(document && textOf(&*document) != nullptr && *textOf(&*document) == repaired, "JSON carries any text");

    const auto title = safeTitle(bytes);
    require(isValidUtf8(title) && codePoints(title) <= 300, "a title is short text");
    require(safeTitle(title) == title, "a safe title is safe");
    require(std::ranges::none_of(title, [](unsigned char c) { return c < 0x20 || c == 0x7F; }),
            "a title has no control characters");
    for (const std::size_t count : {0U, 1U, 90U}) {
        const auto first = firstCodePoints(repaired, count);
        require(repaired.starts_with(first) && codePoints(first) == std::min(count, codePoints(repaired)),
                "code points are counted alike");
        require(isValidUtf8(first), "cutting leaves code points whole");
    }
}

void requireEncoding(std::string_view bytes)
{
    const auto component = percentEncodedComponent(bytes);
    require(percentDecoded(component) == bytes, "what is percent-encoded decodes to itself");
    for (const auto& encoded : {component, percentEncodedForQuery(bytes)})
        require(std::ranges::all_of(encoded, [](unsigned char c) { return c > 0x20 && c < 0x7F && c != '#'; }),
                "percent-encoded text is plain ASCII");
    require(percentDecoded(bytes).size() <= bytes.size(), "decoding never lengthens");
}

} // namespace

void readInput(std::string_view bytes)
{
    requireTrimming(bytes);
    requireRepair(bytes);
    requireEncoding(bytes);
    require(lowercased(lowercased(bytes)) == lowercased(bytes), "lower case stays");
    require(containsIgnoringCase(bytes, bytes) && containsIgnoringCase(bytes, ""), "text contains itself and nothing");
    require(containsIgnoringCase(bytes, lowercased(bytes)), "text contains itself in lower case");
    if (const auto number = strictInteger(bytes))
        require(strictInteger(fmt::to_string(*number)) == number, "a number is what its digits say");
}

} // namespace corvane::fuzz
