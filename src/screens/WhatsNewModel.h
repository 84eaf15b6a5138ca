#pragma once

#include "async/TaskScope.h"
#include "base/Published.h"
#include "base/Url.h"
#include "catalogue/PublishingClient.h"
#include "ports/AppInfo.h"
#include "ports/Clock.h"
#include "ports/Desktop.h"
#include "ports/DocumentView.h"
#include "ports/Resources.h"
#include "state/WhatsNewContext.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace corvane {

class AppState;
class SettingsManager;
class ThemeManager;

/// Decides what the release-notes dialog shows: one page at a time, the current one first and then the archived ones,
/// a higher index being an older release; and whether it offers an update.
class WhatsNewModel {
public:
    struct ManifestEntry {
        std::string title;
        std::optional<Url> archiveURL; // absent for the current page
    };

    struct Services {
        AppState& appState;
        const SettingsManager& settingsManager;
        const ThemeManager& themeManager;
        const Resources& resources;
        const AppInfo& app;
        HttpClient& http;
        const Clock& clock;
        Desktop& desktop;
    };

    /// Everything must outlive this object. `onUpdate` runs when the user asks for the update, before the dialog
    /// closes.
    WhatsNewModel(const Services& services, std::function<void(const WhatsNewContext&)> onUpdate);

    /// The dialog is shown with what `AppState` asks for: the current page, and no archived page known yet.
    void appear();

    /// The dialog has gone: what is still on its way is not fetched any further.
    void disappear();

    std::vector<ManifestEntry> manifest() const;
    std::string title() const;
    std::optional<std::string> statusLine() const;
    bool offersUpdate() const;

    /// Whether there are archived pages to go to, and whether there is an older and a newer one from here.
    bool hasNavigation() const;
    bool hasOlder() const;
    bool hasNewer() const { return *currentIndex_ > 0; }
    void showOlder() { showEntry(*currentIndex_ + 1); }
    void showNewer() { showEntry(*currentIndex_ - 1); }

    /// Shows the entry with this index and fetches its page when it has not been tried yet. Does nothing outside the
    /// manifest.
    void showEntry(std::int64_t index);

    const Published<std::int64_t>& currentIndex() const { return currentIndex_; }

    /// The whole document to show, changed with the index and with the arrival of a page.
    const Published<std::string>& page() const { return page_; }

    /// What the document view adds so that the text stays readable on the theme's background.
    std::string readerStyle() const;

    /// Whether the document view may follow the link in itself; web addresses go to the main browser and close the
    /// dialog, mail addresses to the mail program.
    bool followsLink(const DocumentLink& link);

    /// "Update".
    void update();

    /// "Cancel" and "Close".
    void close();

private:
    std::string currentBody() const;
    std::string pageHTML() const;
    std::string themeName() const;

    /// Puts the page that is there, or the words that there is none, into the cache.
    Task<void> fetchArchive(std::int64_t index, Url address);

    Services services_;
    PublishingClient publishing_;
    std::function<void(const WhatsNewContext&)> onUpdate_;
    std::optional<WhatsNewContext> context_;
    std::map<std::int64_t, std::string> archiveCache_; // bodies by index
    std::set<std::int64_t> fetching_;                  // indexes
    Published<std::int64_t> currentIndex_{0};
    Published<std::string> page_;
    TaskScope fetches_;
};

} // namespace corvane
