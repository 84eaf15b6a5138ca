#include "api/BodyFields.h"

#include "base/Text.h"

#include <algorithm>

#include <fmt/format.h>

namespace corvane::server {
namespace {

bool isVisibleAscii(char c)
{
    return c > 0x20 && c < 0x7F;
}

bool isEmail(std::string_view text)
{
    static constexpr std::size_t longest = 254; // RFC 5321, 4.5.3.1.3
    const auto at = text.find('@');
    const auto isOneWord = std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) <= 0x20; });
    return isOneWord && text.size() <= longest && at != std::string_view::npos && at > 0 && at + 1 < text.size() &&
           text.find('@', at + 1) == std::string_view::npos && safeTitle(text) == text;
}

} // namespace

bool isUuid(std::string_view text)
{
    static constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return std::ranges::equal(text, form, [](char c, char expected) {
        const bool isHex = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        return expected == 'x' ? isHex : c == expected;
    });
}

bool isWord(std::string_view text, std::size_t longest)
{
    return !text.empty() && text.size() <= longest && std::ranges::all_of(text, isVisibleAscii);
}

BodyFields::BodyFields(const HttpRequest& request) : body_(parseJson(request.body, deepest))
{
    if (!body_ || !body_->is_object())
        complaint_ = HttpAnswer::error(400, "bad_json", "The body must be one JSON object.");
}

std::string BodyFields::line(const char* key, std::size_t shortest, std::size_t longest)
{
    static const std::string nothing;
    const bool isLeftOut = shortest == 0 && body_ && member(*body_, key) == nullptr;
    const auto* found = isLeftOut ? &nothing : text(key);
    if (found == nullptr)
        return {};
    const auto value = trimmed(*found);
    if (firstCodePoints(value, longest) != value || (shortest > 0 && value.empty()))
        complain(key, fmt::format("must have {} to {} characters", shortest, longest));
    else if (safeTitle(value) != value)
        complain(key, "must be one line without control characters");
    return std::string(value);
}

std::string BodyFields::word(const char* key, std::size_t longest)
{
    const auto* found = text(key);
    if (found == nullptr)
        return {};
    if (!isWord(*found, longest))
        complain(key, fmt::format("must be a word of 1 to {} characters", longest));
    return *found;
}

std::string BodyFields::installId(const char* key)
{
    const auto* found = text(key);
    if (found == nullptr)
        return {};
    if (!isUuid(*found))
        complain(key, "must be a UUID");
    return lowercased(*found);
}

std::vector<std::int64_t> BodyFields::identifiers(const char* key, std::size_t most)
{
    std::vector<std::int64_t> identifiers;
    const auto* found = body_ ? member(*body_, key) : nullptr;
    if (found == nullptr || !found->is_array() || found->empty() || found->size() > most) {
        complain(key, fmt::format("must be an array of 1 to {} identifiers", most));
        return identifiers;
    }
    for (const auto& element : *found) {
        const auto number = element.is_number_integer() ? integerOf(element) : std::nullopt;
        if (!number || *number < 1) {
            complain(key, "must hold positive integers only");
            return {};
        }
        identifiers.push_back(*number);
    }
    return identifiers;
}

std::string BodyFields::optionalEmail(const char* key)
{
    if (body_ && member(*body_, key) == nullptr)
        return {};
    const auto* found = text(key);
    if (found == nullptr)
        return {};
    const auto value = trimmed(*found);
    if (!value.empty() && !isEmail(value))
        complain(key, "must be an e-mail address or empty");
    return std::string(value);
}

const std::string* BodyFields::text(const char* key)
{
    const auto* found = body_ ? textOf(member(*body_, key)) : nullptr;
    if (found == nullptr)
        complain(key, "must be a text");
    return found;
}

void BodyFields::complain(const char* key, std::string_view rule)
{
    if (!complaint_)
        complaint_ = HttpAnswer::error(400, "bad_field", fmt::format("\"{}\" {}.", key, rule));
}

} // namespace corvane::server
