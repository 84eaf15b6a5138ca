#include "browser/LoadableAddress.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string>

namespace corvane {

std::optional<Url> parseLoadable(std::string_view text)
{
    auto url = Url::parse(text);
    return url && isLoadable(*url) ? url : std::nullopt;
}

std::optional<Url> parseTyped(std::string_view text)
{
    const auto typed = trimmed(text);
    if (typed.empty())
        return std::nullopt;
    const auto lower = lowercased(typed);
    const bool hasScheme = lower.starts_with("http://") || lower.starts_with("https://");
    return Url::parse(hasScheme ? std::string(typed) : "https://" + std::string(typed));
}

bool mayReplacePage(const Url& requested, const std::optional<Url>& shown)
{
    static constexpr std::array<std::string_view, 5> always{"http", "https", "mailto", "itms-apps", "itms-appss"};
    if (requested.scheme() == "file")
        return shown && shown->scheme() == "file";
    return std::ranges::find(always, requested.scheme()) != always.end();
}

} // namespace corvane
