#pragma once

#include "async/TaskScope.h"
#include "base/Published.h"
#include "base/Url.h"
#include "ports/HttpClient.h"
#include "screens/DMGDownloadOutcome.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class DMGDownloadHelper;

/// Runs the download of an installer that follows the "Update" button, one at a time, and reports its outcome.
class InstallerDownloadModel {
public:
    static constexpr std::string_view progressText = "Downloading update…";

    /// What the window shows of a download under way, changed at most once for each percent or, without a known length,
    /// for each mebibyte.
    struct Progress {
        std::optional<double> fraction; // 0 to 1; empty while the length is unknown
        std::string sizes;              // "12.3 MB of 85.0 MB", "12.3 MB", or empty before the first byte

        bool operator==(const Progress&) const = default;
    };

    /// Must outlive this object.
    explicit InstallerDownloadModel(DMGDownloadHelper& helper);

    /// Does nothing while a download runs. An outcome that nobody has answered yet is forgotten.
    void start(const Url& url, const std::optional<std::string>& sha256);

    /// Ends the download; nothing of it is left and nothing is reported. Not for observers of `progress`, which the
    /// download itself calls.
    void cancel();

    const Published<bool>& isDownloadingDMG() const { return isDownloadingDMG_; }
    const Published<Progress>& progress() const { return progress_; }
    const Published<std::optional<DMGDownloadOutcome>>& dmgDownloadOutcome() const { return dmgDownloadOutcome_; }

    /// The answers to the alert that reports the outcome.
    void quitAndInstall();
    void dismissOutcome();

private:
    Task<void> download(Url url, std::optional<std::string> sha256);
    void advance(const DownloadProgress& progress);

    DMGDownloadHelper& helper_;
    Published<bool> isDownloadingDMG_{false};
    std::optional<std::uint64_t> step_; // percent or mebibytes of what `progress_` says
    Published<Progress> progress_;
    Published<std::optional<DMGDownloadOutcome>> dmgDownloadOutcome_;
    TaskScope downloads_;
};

} // namespace corvane
