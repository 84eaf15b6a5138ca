#include "catalogue/ArchiveIndex.h"

#include "base/Json.h"

#include <algorithm>
#include <string>

namespace corvane {
namespace {

const std::string* textIn(const Json& entry, std::string_view key)
{
    const auto* text = textOf(member(entry, key));
    return text != nullptr && !text->empty() ? text : nullptr;
}

} // namespace

std::vector<ArchiveEntry> decodeArchiveIndex(std::string_view bytes, std::string_view folder)
{
    const auto document = parseJson(bytes);
    const auto* listed = document ? member(*document, "archives") : nullptr;
    if (listed == nullptr || !listed->is_array() || !std::ranges::all_of(*listed, &Json::is_object))
        return {};

    std::vector<ArchiveEntry> entries;
    for (const auto& entry : *listed) {
        const auto* file = textIn(entry, "file");
        const auto* title = textIn(entry, "title");
        if (file == nullptr || title == nullptr)
            continue;
        if (auto url = Url::parse(std::string(folder) + *file))
            entries.push_back({.url = *std::move(url), .title = *title});
    }
    return entries;
}

} // namespace corvane
