#include "screens/ToolbarModel.h"

#include "analytics/AnalyticsManager.h"
#include "notifications/PushDeviceManager.h"
#include "state/AppState.h"

#include <string>

namespace corvane {

ToolbarModel::ToolbarModel(AppState& appState, const PushDeviceManager& pushDevices, const Endpoints& endpoints,
                           AnalyticsManager& analytics)
    : appState_(appState), pushDevices_(pushDevices), endpoints_(endpoints), analytics_(analytics)
{
}

const Published<bool>& ToolbarModel::isEnabled(WebViewAction action) const
{
    switch (action) {
    case WebViewAction::goBack:
        return appState_.canGoBack;
    case WebViewAction::goForward:
        return appState_.canGoForward;
    case WebViewAction::stop:
        return appState_.isLoading;
    case WebViewAction::reload:
    case WebViewAction::goHome:
        break;
    }
    return always_;
}

void ToolbarModel::press(const Button& button)
{
    analytics_.trackButtonClick(std::string(button.trackedLabel));
    appState_.pendingAction.set(button.action);
}

void ToolbarModel::menuOpened()
{
    analytics_.trackMenuOpen();
}

void ToolbarModel::choose(const MenuEntry& entry)
{
    analytics_.trackMenuClick(std::string(entry.title));
    switch (entry.item) {
    case MenuItem::profile:
        appState_.pendingLoadURL.set(pushDevices_.registrationPageURL());
        break;
    case MenuItem::help:
        appState_.pendingLoadURL.set(endpoints_.helpPage());
        break;
    }
}

} // namespace corvane
