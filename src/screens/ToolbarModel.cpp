#include "screens/ToolbarModel.h"

#include "analytics/AnalyticsManager.h"
#include "catalogue/SiteListManager.h"
#include "notifications/PushDeviceManager.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"
#include "updates/AppUpdateManager.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>

namespace corvane {
namespace {

using MenuItem = ToolbarModel::MenuItem;

constexpr std::string_view checkingTitle = "Checking…";

std::string_view titleWithBadge(const ToolbarModel::MenuEntry& entry)
{
    switch (entry.item) {
    case MenuItem::listUpdates:
        return "Check for List Updates ";
    case MenuItem::appUpdates:
        return "Check for App Updates ";
    case MenuItem::notifications:
        return "Notifications ";
    case MenuItem::profile:
    case MenuItem::settings:
    case MenuItem::help:
    case MenuItem::about:
        break;
    }
    return entry.title;
}

Alert couldNotCheck(std::string text)
{
    return {.message = "Could Not Check for Updates", .informativeText = std::move(text)};
}

} // namespace

ToolbarModel::ToolbarModel(const Services& services, Badges badges) : services_(services), badges_(badges)
{
    const auto update = [this](const auto&) { updateEntries(); };
    for (const auto* flag :
         {&badges_.siteUpdate, &badges_.appUpdate, &badges_.notification,
          &services_.siteListManager.isCheckingForUpdates(), &services_.appUpdateManager.isCheckingForUpdates()})
        observations_.push_back(flag->observe(update));
    observations_.push_back(services_.settingsManager.settings().bind(update));
}

const Published<bool>& ToolbarModel::isEnabled(WebViewAction action) const
{
    switch (action) {
    case WebViewAction::goBack:
        return services_.appState.canGoBack;
    case WebViewAction::goForward:
        return services_.appState.canGoForward;
    case WebViewAction::stop:
        return services_.appState.isLoading;
    case WebViewAction::reload:
    case WebViewAction::goHome:
        break;
    }
    return always_;
}

void ToolbarModel::press(const Button& button)
{
    services_.analytics.trackButtonClick(button.trackedLabel);
    services_.appState.pendingAction.set(button.action);
}

void ToolbarModel::perform(WebViewAction action)
{
    const auto* button = std::ranges::find(buttons, action, &Button::action);
    if (*isEnabled(action))
        press(*button);
}

void ToolbarModel::updateEntries()
{
    for (const auto& entry : menu)
        states_.at(static_cast<std::size_t>(entry.item)).set(entryState(entry));
    hasBadge_.set(*badges_.siteUpdate || *badges_.appUpdate || *badges_.notification);
}

ToolbarModel::EntryState ToolbarModel::entryState(const MenuEntry& entry) const
{
    if (isChecking(entry.item))
        return {.title = checkingTitle, .icon = entry.icon, .hasBadge = false, .isEnabled = false};
    const bool isAllowedNow = isAllowed(entry.item);
    if (hasBadge(entry.item))
        return {.title = titleWithBadge(entry), .icon = entry.badgeIcon, .hasBadge = true, .isEnabled = isAllowedNow};
    return {.title = entry.title, .icon = entry.icon, .hasBadge = false, .isEnabled = isAllowedNow};
}

bool ToolbarModel::isChecking(MenuItem item) const
{
    return (item == MenuItem::listUpdates && *services_.siteListManager.isCheckingForUpdates()) ||
           (item == MenuItem::appUpdates && *services_.appUpdateManager.isCheckingForUpdates());
}

bool ToolbarModel::isAllowed(MenuItem item) const
{
    return item != MenuItem::listUpdates || services_.settingsManager.settings()->AllowSiteListUpdates == "On";
}

bool ToolbarModel::hasBadge(MenuItem item) const
{
    return (item == MenuItem::listUpdates && *badges_.siteUpdate) ||
           (item == MenuItem::appUpdates && *badges_.appUpdate) ||
           (item == MenuItem::notifications && *badges_.notification);
}

void ToolbarModel::menuOpened()
{
    services_.analytics.trackMenuOpen();
}

void ToolbarModel::choose(MenuItem item)
{
    if (!state(item)->isEnabled)
        return;
    services_.analytics.trackMenuClick(std::ranges::find(menu, item, &MenuEntry::item)->title);
    carryOut(item);
}

void ToolbarModel::carryOut(MenuItem item)
{
    auto& state = services_.appState;
    switch (item) {
    case MenuItem::profile:
        return state.pendingLoadURL.set(services_.pushDevices.registrationPageURL());
    case MenuItem::listUpdates:
        return checks_.start(checkSiteList());
    case MenuItem::appUpdates:
        return checks_.start(checkApp());
    case MenuItem::notifications:
        return showNotifications();
    case MenuItem::settings:
        return state.showSettings.set(true);
    case MenuItem::help:
        return state.pendingLoadURL.set(services_.endpoints.helpPage());
    case MenuItem::about:
        return state.showAbout.set(true);
    }
}

void ToolbarModel::showNotifications()
{
    if (*badges_.notification)
        services_.appState.showNotifications.set(true);
    else
        show({.message = "Notifications", .informativeText = "There are no unread notifications."});
}

Task<void> ToolbarModel::checkSiteList()
{
    auto source = services_.settingsManager.settings()->SitesSourceUrl;
    auto result = co_await services_.siteListManager.checkForUpdates(std::move(source));
    if (auto* error = std::get_if<SiteListManager::NetworkError>(&result)) {
        services_.analytics.trackListUpdateCheck("network_error");
        show(couldNotCheck(std::move(error->message)));
        co_return;
    }
    WhatsNewContext context{.isSiteListUpdate = true};
    if (auto* update = std::get_if<SiteListManager::UpdateAvailable>(&result)) {
        services_.analytics.trackListUpdateCheck("update_available");
        context.hasSiteUpdate = true;
        context.pendingSiteData = std::move(update->pendingData);
        context.whatsNewHTML = std::move(update->whatsNewHTML);
        context.archives = std::move(update->archives);
    } else {
        auto& current = std::get<SiteListManager::Current>(result);
        services_.analytics.trackListUpdateCheck("up_to_date");
        context.whatsNewHTML = std::move(current.whatsNewHTML);
        context.archives = std::move(current.archives);
    }
    services_.appState.activeWhatsNew.set(std::move(context));
}

Task<void> ToolbarModel::checkApp()
{
    auto result = co_await services_.appUpdateManager.checkForUpdates();
    if (auto* error = std::get_if<AppUpdateManager::NetworkError>(&result)) {
        services_.analytics.trackAppUpdateCheck("network_error");
        show(couldNotCheck(std::move(error->message)));
        co_return;
    }
    WhatsNewContext context{.isAppUpdate = true};
    if (auto* update = std::get_if<AppUpdateManager::UpdateAvailable>(&result)) {
        services_.analytics.trackAppUpdateCheck("update_available");
        context.hasAppUpdate = true;
        context.availableAppVersion = std::move(update->storeVersion);
        context.downloadURL = std::move(update->downloadURL);
        context.downloadSha256 = std::move(update->sha256);
        context.whatsNewHTML = std::move(update->whatsNewHTML);
        context.archives = std::move(update->archives);
    } else {
        auto& current = std::get<AppUpdateManager::Current>(result);
        services_.analytics.trackAppUpdateCheck("up_to_date");
        context.whatsNewHTML = std::move(current.whatsNewHTML);
        context.archives = std::move(current.archives);
    }
    services_.appState.activeWhatsNew.set(std::move(context));
}

void ToolbarModel::show(Alert alert)
{
    if (*alert_)
        waitingAlerts_.push_back(std::move(alert));
    else
        alert_.set(std::move(alert));
}

void ToolbarModel::dismissAlert()
{
    alert_.set(std::nullopt);
    if (waitingAlerts_.empty() || *alert_)
        return;
    auto next = std::move(waitingAlerts_.front());
    waitingAlerts_.pop_front();
    alert_.set(std::move(next));
}

} // namespace corvane
