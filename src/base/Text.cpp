#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <utility>

#include <unicase.h>

namespace corvane {
namespace {

struct Decoded {
    char32_t codePoint;
    std::size_t length; // bytes; 0 where the bytes are not well-formed
};

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

Decoded decode(std::string_view bytes)
{
    struct Form {
        unsigned char mask, lead;
        std::size_t length;
        char32_t smallest;
    };
    static constexpr std::array<Form, 4> forms{
        {{0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}}};

    const auto first = static_cast<unsigned char>(bytes.front());
    const auto* form = std::ranges::find_if(forms, [&](const Form& f) { return (first & f.mask) == f.lead; });
    if (form == forms.end() || bytes.size() < form->length)
        return {0, 0};
    if (form->length == 1)
        return {first, 1};

    auto codePoint = static_cast<char32_t>(first & static_cast<unsigned char>(~form->mask));
    for (std::size_t i = 1; i < form->length; ++i) {
        if (!isContinuation(bytes[i]))
            return {0, 0};
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(bytes[i]) & 0x3FU);
    }
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < form->smallest || codePoint > 0x10FFFF || isSurrogate)
        return {0, 0};
    return {codePoint, form->length};
}

bool isWhiteSpace(char32_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

bool isDirectionOrControl(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x061C || c == 0x200E || c == 0x200F || c == 0x2028 ||
           c == 0x2029 || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

template <typename IsBlank>
std::string_view trimmedBy(std::string_view text, IsBlank isBlank)
{
    while (!text.empty()) {
        const auto first = decode(text);
        if (first.length == 0 || !isBlank(first.codePoint))
            break;
        text.remove_prefix(first.length);
    }
    while (!text.empty()) {
        std::size_t start = text.size() - 1;
        while (start > 0 && text.size() - start < 4 && isContinuation(text[start]))
            --start;
        const auto last = decode(text.substr(start));
        if (last.length != text.size() - start || !isBlank(last.codePoint))
            break;
        text.remove_suffix(last.length);
    }
    return text;
}

char lowercase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Unicode's full case folding.
std::string caseFolded(std::string_view text)
{
    std::size_t size = 0;
    const std::unique_ptr<std::uint8_t, void (*)(void*)> folded(
        u8_casefold(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), nullptr, UNINORM_NFC, nullptr,
                    &size),
        std::free);
    return folded ? std::string(reinterpret_cast<const char*>(folded.get()), size) : std::string(text);
}

bool isAlphanumeric(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string percentEncoded(std::string_view text, std::string_view allowed)
{
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const char c : text) {
        if (isAlphanumeric(c) || allowed.contains(c)) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += '%';
            encoded += digits[byte >> 4U];
            encoded += digits[byte & 0xFU];
        }
    }
    return encoded;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    return trimmedBy(text, isWhiteSpace);
}

std::string_view trimmedBlanks(std::string_view text)
{
    return trimmedBy(text, [](char32_t c) { return c == U' ' || c == U'\t'; });
}

std::size_t leadingWhiteSpace(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size()) {
        const auto next = decode(text.substr(length));
        if (next.length == 0 || !isWhiteSpace(next.codePoint))
            break;
        length += next.length;
    }
    return length;
}

std::string lowercased(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), lowercase);
    return lower;
}

bool containsIgnoringCase(std::string_view text, std::string_view part)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::ranges::all_of(part, isAscii)) {
        const auto equal = [](char a, char b) { return lowercase(a) == lowercase(b); };
        if (part.empty() || !std::ranges::search(text, part, equal).empty())
            return true;
        if (std::ranges::all_of(text, isAscii))
            return false;
    }
    return caseFolded(text).contains(caseFolded(part));
}

bool isValidUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto next = decode(bytes);
        if (next.length == 0)
            return false;
        bytes.remove_prefix(next.length);
    }
    return true;
}

std::string repairedUtf8(std::string_view bytes)
{
    std::string repaired;
    repaired.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto next = decode(bytes);
        repaired += next.length == 0 ? std::string_view("\xEF\xBF\xBD") : bytes.substr(0, next.length);
        bytes.remove_prefix(std::max<std::size_t>(next.length, 1));
    }
    return repaired;
}

std::string_view firstCodePoints(std::string_view text, std::size_t count)
{
    std::size_t end = 0;
    while (count > 0 && end < text.size()) {
        ++end;
        while (end < text.size() && isContinuation(text[end]))
            ++end;
        --count;
    }
    return text.substr(0, end);
}

std::optional<std::int64_t> strictInteger(std::string_view text)
{
    // from_chars takes "-" but no "+"; "+-5" must not slip through.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string percentEncodedForQuery(std::string_view text)
{
    return percentEncoded(text, "-._~!$&'()*+,;=:@/?");
}

std::string percentEncodedComponent(std::string_view text)
{
    return percentEncoded(text, "-._~");
}

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto digits = text.substr(i + 1, 2);
        unsigned char byte = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        const bool isEncoded = text[i] == '%' && digits.size() == 2 && end == digits.data() + 2 && error == std::errc();
        decoded += isEncoded ? static_cast<char>(byte) : text[i];
        i += isEncoded ? 2 : 0;
    }
    return decoded;
}

std::string safeTitle(std::string_view title)
{
    static constexpr std::size_t longest = 300;
    std::string safe;
    std::size_t count = 0;
    while (!title.empty() && count < longest) {
        const auto next = decode(title);
        if (next.length == 0) {
            safe += "\xEF\xBF\xBD";
            ++count;
        } else if (!isDirectionOrControl(next.codePoint)) {
            safe += title.substr(0, next.length);
            ++count;
        }
        title.remove_prefix(std::max<std::size_t>(next.length, 1));
    }
    return safe;
}

} // namespace corvane
