#pragma once

#include "async/Task.h"
#include "base/BusyFlag.h"
#include "base/Published.h"
#include "ports/AppInfo.h"
#include "ports/Clock.h"
#include "ports/Endpoints.h"
#include "ports/HttpClient.h"
#include "updates/UpdateChoice.h"
#include "updates/VersionSources.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvane {

/// Finds out whether a newer version of the program exists and gathers its release notes. Two sources are asked: the
/// version file on the publishing server and the store's look-up service. Nothing is kept but the two flags.
///
/// Checks may overlap, and destroying one ends it where it is; the object outlives them all. Main thread only.
class AppUpdateManager {
public:
    struct UpdateAvailable {
        std::string whatsNewHTML;
        std::vector<ArchiveEntry> archives;
        std::optional<std::string> storeVersion; // the newer version, whoever has it; always present
        std::optional<Url> downloadURL;          // absent when the store has it
        std::optional<std::string> sha256;       // of the file there, when its server says so

        bool operator==(const UpdateAvailable&) const = default;
    };
    struct Current {
        std::string whatsNewHTML;
        std::vector<ArchiveEntry> archives;

        bool operator==(const Current&) const = default;
    };
    struct NetworkError {
        std::string message;

        bool operator==(const NetworkError&) const = default;
    };
    using CheckResult = std::variant<UpdateAvailable, Current, NetworkError>;

    /// The ports must outlive this object.
    AppUpdateManager(HttpClient& http, const Clock& clock, const Endpoints& endpoints, AppInfo app);

    /// A check that the user asked for.
    Task<CheckResult> checkForUpdates();

    /// A check that nobody waits for: 1 and the flag raised for an update, 0 and the flag lowered without one, -1 and
    /// the flag as it was after a failure.
    Task<std::int64_t> backgroundCheck();

    /// What both have in common.
    Task<CheckResult> runCheck() const;

    const Published<bool>& isCheckingForUpdates() const { return checking_.isUp(); }
    Published<bool>& hasPendingAppUpdate() { return hasPendingAppUpdate_; }

private:
    /// The update as it is offered; notes and archives are filled in later.
    std::optional<UpdateAvailable> offered(std::optional<HostedVersion> hosted,
                                           const std::optional<std::string>& store) const;

    const Clock& clock_;
    VersionSources sources_;
    std::string appWhatsNewBaseURL_;
    Url appDownloadPageURL_;
    AppInfo app_;
    Published<bool> hasPendingAppUpdate_;
    BusyFlag checking_;
};

} // namespace corvane
