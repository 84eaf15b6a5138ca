#pragma once

#include "base/Url.h"
#include "base/Uuid.h"
#include "catalogue/ArchiveEntry.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// What the release-notes dialog shows and which update it offers. Two contexts are the same presentation only when
/// their ids are equal.
struct WhatsNewContext {
    std::string id = randomUuid();
    std::optional<std::string> whatsNewHTML;
    bool isSiteListUpdate = false;
    bool hasSiteUpdate = false;
    std::optional<std::string> pendingSiteData; // the catalogue document to apply, as downloaded
    bool isAppUpdate = false;
    bool hasAppUpdate = false;
    std::optional<std::string> availableAppVersion;
    std::optional<Url> downloadURL;
    std::optional<std::string> downloadSha256; // what the file there must hash to
    std::vector<ArchiveEntry> archives;        // in the order of their index

    bool operator==(const WhatsNewContext& other) const { return id == other.id; }
};

} // namespace corvane
