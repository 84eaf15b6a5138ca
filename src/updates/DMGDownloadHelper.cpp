#include "updates/DMGDownloadHelper.h"

#include "base/Text.h"
#include "updates/InstallerFileName.h"
#include "updates/InstallerSink.h"

#include <utility>

#include <fmt/format.h>

namespace corvane {
namespace {

std::unexpected<Error> failure(std::string message)
{
    return std::unexpected(Error{std::move(message)});
}

} // namespace

DMGDownloadHelper::DMGDownloadHelper(HttpClient& http, FileStore& files, IncomingFiles& incoming, Desktop& desktop,
                                     Clock& clock, Places places)
    : http_(http), files_(files), incoming_(incoming), desktop_(desktop), clock_(clock), places_(std::move(places))
{
}

Task<DMGDownloadHelper::Result> DMGDownloadHelper::download(Url from, std::optional<std::string> sha256,
                                                            DownloadObserver observer)
{
    InstallerSink sink(files_, incoming_, places_);
    const auto status = co_await http_.download(from, &sink, std::move(observer));
    if (!status)
        co_return std::unexpected(status.error());
    if (*status < 200 || *status > 299)
        co_return failure(fmt::format("Server returned status {}.", *status));

    const auto file = sink.file();
    if (!file)
        co_return std::unexpected(file.error());
    if (sha256 && lowercased(*sha256) != (*file)->sha256())
        co_return failure("The downloaded file is not the one that was announced.");
    auto result = co_await stored(*file, installerFileName(from));
    co_return result;
}

Task<DMGDownloadHelper::Result> DMGDownloadHelper::stored(IncomingFile* file, std::string name)
{
    if (places_.downloads) {
        const auto target = *places_.downloads / name;
        if (const auto room = makeRoom(target); !room)
            co_return std::unexpected(room.error());
        const auto moved = co_await file->moveTo(target);
        if (moved)
            co_return target;
    }

    if (const auto made = files_.makeFolder(places_.updates()); !made)
        co_return std::unexpected(made.error());
    const auto target = places_.updates() / name;
    if (const auto room = makeRoom(target); !room)
        co_return std::unexpected(room.error());
    const auto moved = co_await file->moveTo(target);
    if (!moved)
        co_return std::unexpected(moved.error());
    co_return target;
}

corvane::Result<void> DMGDownloadHelper::makeRoom(const std::filesystem::path& target)
{
    return files_.exists(target) ? files_.remove(target) : corvane::Result<void>();
}

void DMGDownloadHelper::openInstallerAndQuit(const std::filesystem::path& file)
{
    desktop_.open(Url::ofFile(file));
    quitting_ = clock_.after(quitDelay, [this] { desktop_.quit(); });
}

} // namespace corvane
