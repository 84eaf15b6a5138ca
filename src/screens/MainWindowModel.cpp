#include "screens/MainWindowModel.h"

#include "analytics/AnalyticsManager.h"
#include "base/Text.h"
#include "browser/LoadableAddress.h"
#include "catalogue/SavedSite.h"
#include "catalogue/SiteListManager.h"
#include "notifications/PushDeviceManager.h"
#include "ports/DefaultsStore.h"
#include "screens/InstallerDownloadModel.h"
#include "state/AppNotifications.h"
#include "state/AppState.h"
#include "updates/AppUpdateManager.h"

#include <filesystem>
#include <utility>

namespace corvane {
namespace {

/// Whether the last component of the path, decoded, has the extension of an installer image.
bool isInstallerImage(const Url& url)
{
    auto path = url.path();
    path = path.substr(0, path.find_last_not_of('/') + 1);
    const std::filesystem::path name(percentDecoded(path.substr(path.rfind('/') + 1)));
    return lowercased(name.extension().string()) == ".dmg";
}

} // namespace

MainWindowModel::MainWindowModel(const Services& services) : services_(services)
{
    observations_.push_back(services_.siteListManager.hasPendingSiteUpdate().bind(
        [this](bool isPending) { showSiteUpdateBadge_.set(isPending); }));
    observations_.push_back(services_.appUpdateManager.hasPendingAppUpdate().bind(
        [this](bool isPending) { showAppUpdateBadge_.set(isPending); }));
    observations_.push_back(services_.pushDevices.pending().bind(
        [this](const auto& pending) { showNotificationBadge_.set(!pending.empty()); }));
    observations_.push_back(services_.sheets.shown().bind([this](const auto& shown) { sheetChanged(shown); }));
}

Url MainWindowModel::initialURL() const
{
    if (!*services_.appState.isFirstUse()) {
        const auto& sites = *services_.siteListManager.sites();
        const auto saved = savedSiteID(services_.defaults, sites);
        const auto* site = saved ? findSite(sites, *saved) : nullptr;
        if (auto address = site == nullptr ? std::nullopt : parseLoadable(site->url))
            return *address;
    }
    return services_.pushDevices.registrationPageURL();
}

void MainWindowModel::toggleURLMode()
{
    auto& state = services_.appState;
    if (!*state.isFirstUse())
        state.isURLMode.set(!*state.isURLMode);
}

void MainWindowModel::observe(NotificationCenter& notifications)
{
    observations_.push_back(notifications.observe(toggleURLModeNotification, [this] { toggleURLMode(); }));
    observations_.push_back(
        notifications.observe(showAboutNotification, [this] { services_.appState.showAbout.set(true); }));
}

std::string MainWindowModel::windowTitle() const
{
    auto title = safeTitle(*services_.appState.title);
    return trimmed(title).empty() ? std::string(applicationName) : title;
}

void MainWindowModel::created()
{
    services_.analytics.trackUICreated();
}

void MainWindowModel::update(const WhatsNewContext& context)
{
    if (context.isSiteListUpdate && context.pendingSiteData)
        services_.siteListManager.applyPendingSiteData(*context.pendingSiteData);
    else if (context.isAppUpdate)
        updateApp(context);
}

void MainWindowModel::updateApp(const WhatsNewContext& context)
{
    const auto& link = context.downloadURL;
    if (link && isInstallerImage(*link))
        services_.installer.start(*link, context.downloadSha256);
    else if (link && isLoadable(*link))
        services_.appState.pendingLoadURL.set(link);
    else
        services_.desktop.open(services_.endpoints.storePage);
}

void MainWindowModel::sheetChanged(const std::optional<SheetsModel::Presentation>& shown)
{
    if (const auto before = std::exchange(shown_, shown))
        sheetClosed(*before);
    if (shown_)
        sheetShown(*shown_);
}

void MainWindowModel::sheetShown(const SheetsModel::Presentation& presentation)
{
    const auto& context = *services_.appState.activeWhatsNew;
    if (presentation.sheet != Sheet::whatsNew || !context)
        return;
    lastWhatsNewWasSiteUpdate_ = context->isSiteListUpdate;
    lastWhatsNewWasAppUpdate_ = context->isAppUpdate;
}

/// Notes that were seen need no badge any more.
void MainWindowModel::sheetClosed(const SheetsModel::Presentation& presentation)
{
    if (presentation.sheet == Sheet::notifications)
        handOverNotificationURL();
    if (presentation.sheet != Sheet::whatsNew)
        return;
    if (std::exchange(lastWhatsNewWasSiteUpdate_, false))
        services_.siteListManager.hasPendingSiteUpdate().set(false);
    if (std::exchange(lastWhatsNewWasAppUpdate_, false))
        services_.appUpdateManager.hasPendingAppUpdate().set(false);
}

void MainWindowModel::handOverNotificationURL()
{
    auto& state = services_.appState;
    if (auto address = std::exchange(state.pendingURLAfterNotifications, std::nullopt))
        handOver_ = services_.queue.post([&state, address] { state.pendingLoadURL.set(address); });
}

} // namespace corvane
