#include "commands/ReleaseCommand.h"

#include "publishing/FileBatch.h"
#include "publishing/FileReading.h"
#include "publishing/GeneratedImage.h"
#include "publishing/HostedVersion.h"
#include "publishing/NotesArchive.h"
#include "publishing/NotesText.h"
#include "publishing/PublishedFolder.h"
#include "publishing/Sha256.h"
#include "publishing/VersionNumber.h"

#include <system_error>

#include <fmt/format.h>

namespace corvane::server {

namespace fs = std::filesystem;

namespace {

const fs::path notesFolder = "Corvane/mac_whatsnew";
const fs::path notesPlace = notesFolder / "whatsnew.html";
const fs::path versionPlace = notesFolder / "version.json";

std::unexpected<Error> refused(std::string reason)
{
    return std::unexpected(Error{std::move(reason)});
}

/// The present notes, with their placeholders filled for good, into the archive.
Result<void> archiveNotes(FileBatch& batch, const std::optional<HostedVersion>& old, const std::string& today)
{
    auto notes = readTextIfThere(batch.folder() / notesPlace);
    if (!notes)
        return std::unexpected(notes.error());
    if (!*notes)
        return {};
    if (!old)
        return refused(fmt::format("there are release notes in {} but no {} that names their version",
                                   batch.folder().string(), versionPlace.string()));
    const auto day = old->released.empty() ? today : old->released;
    const auto page = replacedAll(replacedAll(**std::move(notes), "{{VERSION}}", old->version), "{{BUILD_DATE}}", day);
    return NotesArchive(batch, notesFolder / "Previous_Releases")
        .add(fmt::format("whatsnew_{}.html", old->version), fmt::format("Corvane {} ({})", old->version, day), page);
}

/// Puts the image, or the note by which it is generated, into the batch and completes `hosted`.
Result<void> addImage(FileBatch& batch, const CommandLine& line, HostedVersion& hosted)
{
    const auto name = fmt::format("Corvane-{}.dmg", hosted.version);
    const auto place = fs::path("download") / name;
    if (line.imageFile) {
        const auto image = openFile(*line.imageFile);
        if (!image)
            return std::unexpected(image.error());
        if ((*image)->size() == 0)
            return refused(fmt::format("the image {} is empty", line.imageFile->string()));
        auto digest = batch.put(place, **image);
        if (!digest)
            return std::unexpected(digest.error());
        hosted.sha256 = *std::move(digest);
    } else {
        std::error_code failed;
        if (fs::exists(batch.folder() / place, failed))
            return refused(fmt::format("{} is there already and would be published instead", place.string()));
        const GeneratedImage image(name, *line.imageSize);
        hosted.sha256 = sha256Of(image, [](std::string_view) { return true; }).value();
        auto notePlace = place;
        notePlace += GeneratedImage::noteSuffix;
        if (auto put = batch.put(notePlace, image.note()); !put)
            return put;
    }
    hosted.downloadUrl = fmt::format("{}download/{}", PublishedFolder::sampleBase, name);
    return {};
}

std::string report(const HostedVersion& hosted, const std::optional<HostedVersion>& old)
{
    auto lines = fmt::format("Published version {}{}.\n", hosted.version, old ? " after " + old->version : "");
    if (hosted.sha256.empty())
        return lines + "It has no image: applications open the download page.\n";
    return lines + fmt::format("Image: download/Corvane-{}.dmg\nSHA-256: {}\n", hosted.version, hosted.sha256);
}

} // namespace

Result<std::string> release(const CommandLine& line, const Now& now)
{
    const auto version = VersionNumber::parse(line.argument);
    if (!version)
        return refused(fmt::format("\"{}\" is not a version such as 0.76.0", line.argument));
    const auto notes = readText(*line.notesFile);
    if (!notes)
        return std::unexpected(notes.error());
    auto batch = FileBatch::open(*line.publishFolder);
    if (!batch)
        return std::unexpected(batch.error());
    const auto old = HostedVersion::read(batch->folder() / versionPlace);
    if (!old)
        return std::unexpected(old.error());
    if (*old && *version <= *VersionNumber::parse((*old)->version))
        return refused(fmt::format("{} is not newer than the published {}", line.argument, (*old)->version));

    HostedVersion hosted{.version = line.argument, .released = dayText(now()), .downloadUrl = {}, .sha256 = {}};
    if (line.imageFile || line.imageSize) {
        if (auto added = addImage(*batch, line, hosted); !added)
            return std::unexpected(added.error());
    }
    if (auto archived = archiveNotes(*batch, *old, hosted.released); !archived)
        return std::unexpected(archived.error());
    if (auto put = batch->put(notesPlace, *notes); !put)
        return std::unexpected(put.error());
    // Last: an application sees the new version only when all that belongs to it is there.
    if (auto put = batch->put(versionPlace, hosted.document()); !put)
        return std::unexpected(put.error());
    if (auto done = batch->commit(); !done)
        return std::unexpected(done.error());
    return report(hosted, *old);
}

} // namespace corvane::server
