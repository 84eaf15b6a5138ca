#pragma once

#include "async/Task.h"
#include "base/Error.h"
#include "base/Subscription.h"
#include "ports/Clock.h"
#include "ports/Desktop.h"
#include "ports/FileStore.h"
#include "ports/HttpClient.h"
#include "ports/IncomingFile.h"
#include "ports/Places.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace corvane {

/// Fetches the program's installer image into the user's folder for downloads or, where that does not take it, into the
/// program's own folder for updates. Outlives its tasks; destroying one leaves nothing behind.
class DMGDownloadHelper {
public:
    /// Where the image is stored, or what to tell the user.
    using Result = corvane::Result<std::filesystem::path>;

    static constexpr std::chrono::milliseconds quitDelay{1500};

    /// The ports must outlive this object.
    DMGDownloadHelper(HttpClient& http, FileStore& files, IncomingFiles& incoming, Desktop& desktop, Clock& clock,
                      Places places);

    /// Replaces an older file of the same name once the new one is complete. With a `sha256` (hexadecimal) the image
    /// must hash to it. `observer` may be empty.
    Task<Result> download(Url from, std::optional<std::string> sha256, DownloadObserver observer);

    /// Hands the image to its default application and ends the program shortly after, so that it can be replaced.
    void openInstallerAndQuit(const std::filesystem::path& file);

private:
    /// Gives the complete image its place under `name`.
    Task<Result> stored(IncomingFile* file, std::string name);

    /// Removes an older file at `target`; a folder there is a failure.
    corvane::Result<void> makeRoom(const std::filesystem::path& target);

    HttpClient& http_;
    FileStore& files_;
    IncomingFiles& incoming_;
    Desktop& desktop_;
    Clock& clock_;
    Places places_;
    Subscription quitting_;
};

} // namespace corvane
