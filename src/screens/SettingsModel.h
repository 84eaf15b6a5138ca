#pragma once

#include "base/Published.h"
#include "ports/Endpoints.h"
#include "settings/AppSettings.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class AnalyticsManager;
class AppState;
class SettingsManager;

/// Decides what the settings dialog edits: a draft that nobody else sees until "OK" commits it.
class SettingsModel {
public:
    /// The choices of the window theme: as shown, and as stored.
    static constexpr std::array<std::string_view, 3> windowThemes{"System", "Light", "Dark"};

    /// Everything must outlive this object.
    SettingsModel(AppState& appState, SettingsManager& settingsManager, AnalyticsManager& analytics,
                  const Endpoints& endpoints);

    /// The dialog is shown: the draft begins anew as a copy of the settings in use.
    void appear();

    const Published<AppSettings>& draft() const { return draft_; }

    /// The draft's place in `windowThemes` and in `dialogThemeOptions`; empty for a value that is none of them, which
    /// stays as it is until the user picks one.
    std::optional<std::size_t> windowTheme() const;
    std::optional<std::size_t> dialogTheme() const;
    bool isAnalyticsEnabled() const { return draft_->AnalyticsEnabled == "On"; }
    bool allowsSiteListUpdates() const { return draft_->AllowSiteListUpdates == "On"; }

    /// An index outside the list, as a list without a selection has it, changes nothing.
    void pickWindowTheme(std::size_t index);
    void pickDialogTheme(std::size_t index);

    /// A switch that stands as the draft says changes nothing, whatever text the draft holds.
    void enableAnalytics(bool isEnabled);
    void allowSiteListUpdates(bool isAllowed);

    /// Closes the dialog without the draft and shows the privacy policy in the main browser.
    void showPrivacyPolicy();

    void cancel();

    /// Commits the draft and closes the dialog.
    void accept();

private:
    void change(std::string AppSettings::* field, std::string_view value);

    AppState& appState_;
    SettingsManager& settingsManager_;
    AnalyticsManager& analytics_;
    const Endpoints& endpoints_;
    Published<AppSettings> draft_;
};

} // namespace corvane
