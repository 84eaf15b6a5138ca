#include "commands/CatalogueCommand.h"

#include "publishing/CatalogueDocument.h"
#include "publishing/FileBatch.h"
#include "publishing/FileReading.h"
#include "publishing/NotesArchive.h"
#include "publishing/NotesText.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace corvane::server {

namespace fs = std::filesystem;

namespace {

const fs::path sitesFolder = "Corvane/sites";
const fs::path notesPlace = sitesFolder / "whatsnew.html";

Result<void> replaceNotes(FileBatch& batch, const fs::path& file, std::chrono::sys_seconds now)
{
    const auto notes = readText(file);
    if (!notes)
        return std::unexpected(notes.error());
    const auto old = readTextIfThere(batch.folder() / notesPlace);
    if (!old)
        return std::unexpected(old.error());
    if (*old) {
        NotesArchive archive(batch, sitesFolder / "archive");
        const auto name =
            archive.unusedName(fmt::format("whatsnew_{:%Y-%m-%d}", fmt::gmtime(now.time_since_epoch().count())));
        if (auto added = archive.add(name, fmt::format("Service list until {}", dayText(now)), **old); !added)
            return added;
    }
    return batch.put(notesPlace, *notes);
}

} // namespace

Result<std::string> publishCatalogue(const CommandLine& line, const Now& now)
{
    const auto text = readText(line.argument);
    if (!text)
        return std::unexpected(text.error());
    const auto summary = checkedCatalogue(*text);
    if (!summary)
        return std::unexpected(Error{fmt::format("{}: {}", line.argument, summary.error().message)});
    auto batch = FileBatch::open(*line.publishFolder);
    if (!batch)
        return std::unexpected(batch.error());
    if (line.notesFile) {
        if (auto replaced = replaceNotes(*batch, *line.notesFile, now()); !replaced)
            return std::unexpected(replaced.error());
    }
    // Last, so that nobody meets a new catalogue with old notes.
    if (auto put = batch->put(sitesFolder / "sites.json", *text); !put)
        return std::unexpected(put.error());
    if (auto done = batch->commit(); !done)
        return std::unexpected(done.error());
    return fmt::format("Published {}.\n", *summary);
}

} // namespace corvane::server
