#pragma once

#include "async/Task.h"
#include "async/TaskScope.h"
#include "base/BusyFlag.h"
#include "base/Published.h"
#include "catalogue/ArchiveEntry.h"
#include "catalogue/Site.h"
#include "catalogue/SiteListFetcher.h"
#include "ports/FileStore.h"
#include "ports/Places.h"
#include "ports/Resources.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The catalogue in use and its local copy on disk. No failure to load is reported: without a readable local copy the
/// list that ships with the program is used, and without that an empty one.
///
/// Checks compare the published catalogue with the one that is in use when they end, and change nothing but the two
/// flags; the bytes that were seen travel in the result until the user accepts them. Checks may overlap, and destroying
/// one ends it where it is; the object outlives them all. Main thread only.
class SiteListManager {
public:
    struct UpdateAvailable {
        std::string pendingData; // the published document, byte for byte
        std::optional<std::string> whatsNewHTML;
        std::vector<ArchiveEntry> archives;

        bool operator==(const UpdateAvailable&) const = default;
    };
    struct Current {
        std::optional<std::string> whatsNewHTML;
        std::vector<ArchiveEntry> archives;

        bool operator==(const Current&) const = default;
    };
    struct NetworkError {
        std::string message;

        bool operator==(const NetworkError&) const = default;
    };
    using CheckResult = std::variant<UpdateAvailable, Current, NetworkError>;

    /// Loads the catalogue. The ports must outlive this object.
    SiteListManager(FileStore& files, const Resources& resources, const Places& places, SiteListFetcher fetcher);

    /// Reads the catalogue anew, in one piece; never writes.
    void loadSites();

    /// Makes a downloaded catalogue document, byte for byte, the local copy and loads it. The copy before it becomes
    /// the one backup, if it can be read. A long document is loaded in idle turns and comes into use in the last of
    /// them, unless the catalogue is read anew or replaced before; any other at once.
    void applyPendingSiteData(std::string_view data);

    /// A check that the user asked for. An absent or empty `sourceUrl` means the usual address.
    Task<CheckResult> checkForUpdates(std::optional<std::string> sourceUrl);

    /// A check that nobody waits for: 1 and the flag raised for an update, 0 and the flag lowered without one, -1 and
    /// the flag as it was after a failure.
    Task<std::int64_t> backgroundCheck(std::optional<std::string> sourceUrl);

    /// What both have in common.
    Task<CheckResult> fetchRemoteSites(std::optional<std::string> sourceUrl) const;

    std::filesystem::path sitesFileURL() const { return file_; }

    const Published<std::vector<Site>>& sites() const { return sites_; }

    /// Whether the published catalogue was seen to differ from the one in use.
    Published<bool>& hasPendingSiteUpdate() { return hasPendingSiteUpdate_; }

    /// Whether a check that the user asked for is under way.
    const Published<bool>& isCheckingForUpdates() const { return checking_.isUp(); }

private:
    Task<void> loadSitesInTurns(std::uint64_t load);

    FileStore& files_;
    const Resources& resources_;
    std::filesystem::path file_;
    SiteListFetcher fetcher_;
    Published<std::vector<Site>> sites_;
    Published<bool> hasPendingSiteUpdate_;
    BusyFlag checking_;
    std::uint64_t newestLoad_ = 0; // an older one that still runs comes to nothing
    TaskScope loads_;
};

} // namespace corvane
