#include "http/HttpRequest.h"

#include "base/Text.h"
#include "http/PercentDecoding.h"

#include <algorithm>
#include <ranges>

namespace corvane::server {

std::optional<std::string> HttpRequest::queryValue(std::string_view name) const
{
    std::optional<std::string_view> found;
    for (const auto part : std::views::split(query, '&')) {
        const std::string_view item(part);
        const auto equals = item.find('=');
        if (item.substr(0, equals) != name)
            continue;
        if (found || equals == std::string_view::npos)
            return std::nullopt;
        found = item.substr(equals + 1);
    }
    return found ? percentDecoded(*found) : std::nullopt;
}

std::string HttpRequest::cookieValue(std::string_view name) const
{
    for (const auto part : std::views::split(cookie, ';')) {
        const auto item = trimmedBlanks(std::string_view(part));
        const auto equals = item.find('=');
        if (equals != std::string_view::npos && item.substr(0, equals) == name)
            return std::string(item.substr(equals + 1));
    }
    return {};
}

} // namespace corvane::server
