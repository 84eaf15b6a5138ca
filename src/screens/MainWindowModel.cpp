#include "screens/MainWindowModel.h"

#include "analytics/AnalyticsManager.h"
#include "base/Text.h"
#include "browser/LoadableAddress.h"
#include "catalogue/SavedSite.h"
#include "notifications/PushDeviceManager.h"
#include "ports/DefaultsStore.h"
#include "state/AppNotifications.h"
#include "state/AppState.h"

namespace corvane {

MainWindowModel::MainWindowModel(AppState& appState, const PushDeviceManager& pushDevices,
                                 const DefaultsStore& defaults, AnalyticsManager& analytics)
    : appState_(appState), pushDevices_(pushDevices), defaults_(defaults), analytics_(analytics)
{
}

Url MainWindowModel::initialURL(const std::vector<Site>& sites) const
{
    if (!*appState_.isFirstUse()) {
        const auto saved = savedSiteID(defaults_, sites);
        const auto* site = saved ? findSite(sites, *saved) : nullptr;
        if (auto address = site == nullptr ? std::nullopt : parseLoadable(site->url))
            return *address;
    }
    return pushDevices_.registrationPageURL();
}

void MainWindowModel::toggleURLMode()
{
    if (!*appState_.isFirstUse())
        appState_.isURLMode.set(!*appState_.isURLMode);
}

void MainWindowModel::observe(NotificationCenter& notifications)
{
    observations_.push_back(notifications.observe(toggleURLModeNotification, [this] { toggleURLMode(); }));
    observations_.push_back(notifications.observe(showAboutNotification, [this] { appState_.showAbout.set(true); }));
}

std::string MainWindowModel::windowTitle() const
{
    auto title = safeTitle(*appState_.title);
    return trimmed(title).empty() ? std::string(applicationName) : title;
}

void MainWindowModel::created()
{
    analytics_.trackUICreated();
}

} // namespace corvane
