#include "screens/AnalyticsConsentModel.h"

#include "analytics/AnalyticsManager.h"
#include "ports/DefaultsStore.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"

#include <utility>

namespace corvane {

AnalyticsConsentModel::AnalyticsConsentModel(AppState& appState, SettingsManager& settingsManager,
                                             AnalyticsManager& analytics, DefaultsStore& defaults,
                                             const Endpoints& endpoints)
    : appState_(appState), settingsManager_(settingsManager), analytics_(analytics), defaults_(defaults),
      endpoints_(endpoints)
{
}

void AnalyticsConsentModel::answer(bool isEnabled)
{
    analytics_.trackAnalyticsToggled(isEnabled); // recorded only where analytics is on already
    auto settings = *settingsManager_.settings();
    settings.AnalyticsEnabled = isEnabled ? "On" : "Off";
    settingsManager_.updateSettings(std::move(settings));
    analytics_.setEnabled(isEnabled);
    defaults_.setBoolean(analyticsConsentShownKey, true);
    appState_.showAnalyticsConsent.set(false);
}

void AnalyticsConsentModel::showPrivacyPolicy()
{
    appState_.pendingLoadURL.set(endpoints_.privacyUsagePage());
    appState_.showAnalyticsConsent.set(false);
}

} // namespace corvane
