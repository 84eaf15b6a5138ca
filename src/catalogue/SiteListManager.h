#pragma once

#include "base/Published.h"
#include "catalogue/Site.h"
#include "ports/FileStore.h"
#include "ports/Places.h"
#include "ports/Resources.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace corvane {

/// The catalogue in use and its local copy on disk. No failure is reported: without a readable local copy the list that
/// ships with the program is used, and without that an empty one. Main thread only.
class SiteListManager {
public:
    /// Loads the catalogue. The ports must outlive this object.
    SiteListManager(FileStore& files, const Resources& resources, const Places& places);

    /// Reads the catalogue anew; never writes.
    void loadSites();

    /// Makes a downloaded catalogue document, byte for byte, the local copy and loads it. The copy before it stays as
    /// the one backup.
    void applyPendingSiteData(std::string_view data);

    std::filesystem::path sitesFileURL() const { return file_; }

    const Published<std::vector<Site>>& sites() const { return sites_; }

    /// Whether the published catalogue was seen to differ from the one in use.
    Published<bool>& hasPendingSiteUpdate() { return hasPendingSiteUpdate_; }

    /// Whether a check that the user asked for is under way.
    const Published<bool>& isCheckingForUpdates() const { return isCheckingForUpdates_; }

private:
    FileStore& files_;
    const Resources& resources_;
    std::filesystem::path file_;
    Published<std::vector<Site>> sites_;
    Published<bool> hasPendingSiteUpdate_;
    Published<bool> isCheckingForUpdates_;
};

} // namespace corvane
