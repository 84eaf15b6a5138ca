#include "state/AppState.h"

#include "analytics/AnalyticsManager.h"
#include "catalogue/SavedSite.h"
#include "ports/DefaultsStore.h"

namespace corvane {
namespace {

constexpr std::string_view firstUseKey = "FirstUse";

} // namespace

AppState::AppState(DefaultsStore& defaults, AnalyticsManager& analytics)
    : defaults_(defaults), analytics_(analytics), isFirstUse_(defaults.boolean(firstUseKey).value_or(true))
{
}

void AppState::setFirstUse(bool value)
{
    if (value == *isFirstUse_)
        return;
    defaults_.setBoolean(firstUseKey, value);
    isFirstUse_.set(value);
    if (value) {
        defaults_.remove(siteIndexKey);
        selectedSiteURL.set(std::nullopt);
    } else {
        analytics_.trackFirstUse();
        if (!defaults_.boolean(analyticsConsentShownKey).value_or(false))
            showAnalyticsConsent.set(true);
    }
}

} // namespace corvane
