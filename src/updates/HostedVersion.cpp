#include "updates/HostedVersion.h"

#include "base/Json.h"

#include <algorithm>
#include <utility>

namespace corvane {

std::optional<HostedVersion> decodeHostedVersion(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    const auto* version = document ? textOf(member(*document, "version")) : nullptr;
    if (version == nullptr || version->empty())
        return std::nullopt;

    HostedVersion hosted{.version = *version};
    if (const auto* link = textOf(member(*document, "downloadURL"))) {
        auto url = Url::parse(*link);
        if (url && isLoadable(*url))
            hosted.downloadURL = std::move(url);
    }
    if (const auto* digest = member(*document, "sha256"); digest != nullptr && !digest->is_null()) {
        const auto* text = textOf(digest);
        hosted.sha256 = text == nullptr ? std::string() : *text;
    }
    return hosted;
}

std::optional<std::string> decodeStoreVersion(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    const auto* results = document ? member(*document, "results") : nullptr;
    if (results == nullptr || !results->is_array() || results->empty() ||
        !std::ranges::all_of(*results, &Json::is_object))
        return std::nullopt;
    const auto* version = textOf(member(results->front(), "version"));
    return version == nullptr ? std::nullopt : std::optional(*version);
}

} // namespace corvane
