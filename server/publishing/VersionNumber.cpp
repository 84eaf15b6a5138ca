#include "publishing/VersionNumber.h"

#include "base/Text.h"

#include <ranges>

namespace corvane::server {

std::optional<VersionNumber> VersionNumber::parse(std::string_view text)
{
    constexpr std::size_t mostNumbers = 4;
    VersionNumber version;
    for (const auto part : std::views::split(text, '.')) {
        const std::string_view digits(part);
        const auto number = strictInteger(digits);
        if (!number || digits.front() == '+' || digits.front() == '-' || version.numbers_.size() == mostNumbers)
            return std::nullopt;
        version.numbers_.push_back(*number);
    }
    if (version.numbers_.empty())
        return std::nullopt;
    while (!version.numbers_.empty() && version.numbers_.back() == 0)
        version.numbers_.pop_back();
    return version;
}

} // namespace corvane::server
