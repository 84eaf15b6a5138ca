#pragma once

#include "async/TaskScope.h"
#include "base/Published.h"
#include "ports/Endpoints.h"
#include "screens/Alert.h"
#include "state/WebViewAction.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

class AnalyticsManager;
class AppState;
class AppUpdateManager;
class PushDeviceManager;
class SettingsManager;
class SiteListManager;

/// Decides what the browser buttons and the menu show and do. Every command becomes a change of `AppState` or a check
/// by a manager.
class ToolbarModel {
public:
    /// One browser button. `trackedLabel` names it in analytics.
    struct Button {
        WebViewAction action;
        std::string_view icon; // a symbolic icon's name
        std::string_view tooltip;
        std::string_view trackedLabel;
    };

    /// In the order in which they are shown.
    static constexpr std::array<Button, 5> buttons{{
        {WebViewAction::goBack, "corvane-back-symbolic", "Back", "Back"},
        {WebViewAction::goHome, "corvane-home-symbolic", "Home", "Home"},
        {WebViewAction::goForward, "corvane-forward-symbolic", "Forward", "Forward"},
        {WebViewAction::reload, "corvane-reload-symbolic", "Reload", "Reload"},
        {WebViewAction::stop, "corvane-stop-symbolic", "Stop", "Cancel"},
    }};

    enum class MenuItem : std::uint8_t { profile, listUpdates, appUpdates, notifications, settings, help, about };

    struct MenuEntry {
        MenuItem item;
        std::string_view icon;
        std::string_view badgeIcon;
        std::string_view title; // also names the entry in analytics
        bool endsGroup;         // a separator follows
    };

    /// In the order in which they are shown.
    static constexpr std::array<MenuEntry, 7> menu{{
        {MenuItem::profile, "corvane-profile-symbolic", "corvane-profile-symbolic", "Profile", true},
        {MenuItem::listUpdates, "corvane-list-update-symbolic", "corvane-list-update-filled-symbolic",
         "Check for List Updates", false},
        {MenuItem::appUpdates, "corvane-app-update-symbolic", "corvane-app-update-symbolic", "Check for App Updates",
         false},
        {MenuItem::notifications, "corvane-notifications-symbolic", "corvane-notifications-filled-symbolic",
         "Notifications", true},
        {MenuItem::settings, "corvane-settings-symbolic", "corvane-settings-symbolic", "Settings", true},
        {MenuItem::help, "corvane-help-symbolic", "corvane-help-symbolic", "Help", false},
        {MenuItem::about, "corvane-about-symbolic", "corvane-about-symbolic", "About", false},
    }};

    /// How a menu entry stands now. A title with a badge ends in a blank, which divides it from the badge's dot.
    struct EntryState {
        std::string_view title;
        std::string_view icon;
        bool hasBadge = false;
        bool isEnabled = true;

        bool operator==(const EntryState&) const = default;
    };

    /// What the main window knows of updates and notifications.
    struct Badges {
        const Published<bool>& siteUpdate;
        const Published<bool>& appUpdate;
        const Published<bool>& notification;
    };

    struct Services {
        AppState& appState;
        SiteListManager& siteListManager;
        AppUpdateManager& appUpdateManager;
        const SettingsManager& settingsManager;
        const PushDeviceManager& pushDevices;
        AnalyticsManager& analytics;
        const Endpoints& endpoints;
    };

    /// Everything must outlive this object.
    ToolbarModel(const Services& services, Badges badges);

    /// Whether the button of this action can be pressed now.
    const Published<bool>& isEnabled(WebViewAction action) const;

    void press(const Button& button);

    /// The same for a key: does nothing while the button is disabled.
    void perform(WebViewAction action);

    const Published<EntryState>& state(MenuItem item) const { return states_.at(static_cast<std::size_t>(item)); }

    /// Whether the menu button bears a red dot: any badge is on.
    const Published<bool>& hasBadge() const { return hasBadge_; }

    /// The message to be read. Another one waits until this one has been dismissed.
    const Published<std::optional<Alert>>& alert() const { return alert_; }
    void dismissAlert();

    void menuOpened();

    /// Carries out an entry; does nothing while it is disabled.
    void choose(MenuItem item);

private:
    void updateEntries();
    EntryState entryState(const MenuEntry& entry) const;
    bool isChecking(MenuItem item) const;
    bool isAllowed(MenuItem item) const;
    bool hasBadge(MenuItem item) const;
    void carryOut(MenuItem item);
    void showNotifications();
    Task<void> checkSiteList();
    Task<void> checkApp();
    void show(Alert alert);

    Services services_;
    Badges badges_;
    Published<bool> always_{true};
    std::array<Published<EntryState>, menu.size()> states_;
    Published<bool> hasBadge_{false};
    Published<std::optional<Alert>> alert_;
    std::deque<Alert> waitingAlerts_;
    std::vector<Subscription> observations_;
    TaskScope checks_;
};

} // namespace corvane
