#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "catalogue/ArchiveIndex.h"

namespace corvane::fuzz {
namespace {

constexpr std::string_view folder = "https://notes.example/Corvane/archive/";

std::string indexOf(const std::vector<ArchiveEntry>& entries)
{
    auto listed = Json::array();
    for (const auto& [url, title] : entries)
        listed.push_back({{"file", url.text().substr(folder.size())}, {"title", title}});
    return compactJson({{"archives", std::move(listed)}});
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto entries = decodeArchiveIndex(bytes, folder);
    require(entries.empty() || parseJson(bytes), "an index is JSON");
    for (const auto& [url, title] : entries) {
        require(url.text().starts_with(folder) && url.origin() == "https://notes.example",
                "no entry leaves the server of its index");
        require(url.text().size() > folder.size() && !title.empty() && isValidUtf8(title), "an entry is complete");
    }
    require(decodeArchiveIndex(indexOf(entries), folder) == entries, "an index that is written is read again");

    // The folder is text of a server, too.
    const auto other = std::string(bytes) + "/";
    for (const auto& [url, title] : decodeArchiveIndex(R"({"archives":[{"file":"a.html","title":"A"}]})", other))
        require(Url::parse(url.text()) == url && url.text().ends_with("/a.html"), "an entry lies below its folder");
}

} // namespace corvane::fuzz
