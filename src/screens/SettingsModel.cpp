#include "screens/SettingsModel.h"

#include "analytics/AnalyticsManager.h"
#include "settings/DialogThemeOption.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"

#include <algorithm>
#include <ranges>

namespace corvane {
namespace {

constexpr std::string_view switchText(bool isOn)
{
    return isOn ? "On" : "Off";
}

template <typename Choices>
std::optional<std::size_t> placeOf(std::string_view value, const Choices& choices)
{
    const auto found = std::ranges::find(choices, value);
    return found == std::ranges::end(choices)
               ? std::nullopt
               : std::optional<std::size_t>(std::ranges::distance(choices.begin(), found));
}

} // namespace

SettingsModel::SettingsModel(AppState& appState, SettingsManager& settingsManager, AnalyticsManager& analytics,
                             const Endpoints& endpoints)
    : appState_(appState), settingsManager_(settingsManager), analytics_(analytics), endpoints_(endpoints)
{
}

void SettingsModel::appear()
{
    draft_.set(*settingsManager_.settings());
}

std::optional<std::size_t> SettingsModel::windowTheme() const
{
    return placeOf(draft_->AppTheme, windowThemes);
}

std::optional<std::size_t> SettingsModel::dialogTheme() const
{
    return placeOf(draft_->DialogTheme, dialogThemeOptions | std::views::transform(&DialogThemeOption::value));
}

void SettingsModel::pickWindowTheme(std::size_t index)
{
    if (index < windowThemes.size())
        change(&AppSettings::AppTheme, windowThemes[index]);
}

void SettingsModel::pickDialogTheme(std::size_t index)
{
    if (index < dialogThemeOptions.size())
        change(&AppSettings::DialogTheme, dialogThemeOptions[index].value);
}

void SettingsModel::enableAnalytics(bool isEnabled)
{
    if (isEnabled != isAnalyticsEnabled())
        change(&AppSettings::AnalyticsEnabled, switchText(isEnabled));
}

void SettingsModel::allowSiteListUpdates(bool isAllowed)
{
    if (isAllowed != allowsSiteListUpdates())
        change(&AppSettings::AllowSiteListUpdates, switchText(isAllowed));
}

void SettingsModel::change(std::string AppSettings::* field, std::string_view value)
{
    auto draft = *draft_;
    draft.*field = value;
    draft_.set(std::move(draft));
}

void SettingsModel::showPrivacyPolicy()
{
    appState_.pendingLoadURL.set(endpoints_.privacyUsagePage());
    cancel();
}

void SettingsModel::cancel()
{
    appState_.showSettings.set(false);
}

void SettingsModel::accept()
{
    const auto draft = *draft_;
    const auto& settings = *settingsManager_.settings();
    const bool wasToggled = draft.AnalyticsEnabled != settings.AnalyticsEnabled;
    const bool isWanted = isAnalyticsEnabled();

    // Nothing is recorded while analytics is off: what is said of switching it off comes before, of switching it on
    // afterwards.
    if (wasToggled && !isWanted)
        analytics_.trackAnalyticsToggled(false);
    if (draft != settings)
        analytics_.trackSettingsChanged();
    settingsManager_.updateSettings(draft);
    analytics_.setEnabled(isWanted);
    if (wasToggled && isWanted)
        analytics_.trackAnalyticsToggled(true);
    appState_.showSettings.set(false);
}

} // namespace corvane
