#include "publishing/NotesArchive.h"

#include "base/Json.h"
#include "publishing/FileReading.h"

#include <system_error>

#include <fmt/format.h>

namespace corvane::server {
namespace {

constexpr std::size_t deepestIndex = 8;

/// The index in the file, or an empty one when there is none.
Result<Json> readIndex(const std::filesystem::path& file)
{
    const auto text = readTextIfThere(file);
    if (!text)
        return std::unexpected(text.error());
    if (!*text)
        return Json{{"archives", Json::array()}};
    auto index = parseJson(**text, deepestIndex);
    const auto* archives = index ? member(*index, "archives") : nullptr;
    if (archives == nullptr || !archives->is_array())
        return std::unexpected(Error{fmt::format("{} is not an index of release notes", file.string())});
    return *std::move(index);
}

} // namespace

Result<void> NotesArchive::add(const std::string& file, std::string_view title, std::string_view page)
{
    auto index = readIndex(batch_.folder() / place_ / "index.json");
    if (!index)
        return std::unexpected(index.error());
    auto& archives = (*index)["archives"];
    for (auto entry = archives.begin(); entry != archives.end();) {
        const auto* name = textOf(member(*entry, "file"));
        entry = name != nullptr && *name == file ? archives.erase(entry) : entry + 1;
    }
    archives.insert(archives.begin(), Json{{"file", file}, {"title", title}});
    if (auto put = batch_.put(place_ / file, page); !put)
        return put;
    return batch_.put(place_ / "index.json", index->dump(2) + "\n");
}

std::string NotesArchive::unusedName(std::string_view stem) const
{
    std::error_code ignored;
    auto name = fmt::format("{}.html", stem);
    for (int number = 2; std::filesystem::exists(batch_.folder() / place_ / name, ignored); ++number)
        name = fmt::format("{}_{}.html", stem, number);
    return name;
}

} // namespace corvane::server
