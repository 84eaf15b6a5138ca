#include "analytics/AnalyticsManager.h"

#include "analytics/AnalyticsRoutes.h"
#include "analytics/ClientId.h"

#include <chrono>
#include <utility>

namespace corvane {

AnalyticsManager::AnalyticsManager(DefaultsStore& defaults, const HostInfo& host, Clock& clock, const AppInfo& app)
    : clock_(clock), clientId_(makeClientId(defaults, host, clock)),
      appVersion_(app.shortVersion.empty() ? "0.0.0" : app.shortVersion), sessionStartTime_(clock.now())
{
}

AnalyticsManager::~AnalyticsManager() = default;

void AnalyticsManager::setEnabled(bool enabled)
{
    bool isBackOn = false;
    {
        const std::scoped_lock guard(lock_);
        isBackOn = enabled && !enabled_ && webViewConfigured_;
        enabled_ = enabled;
        if (!enabled) {
            preInitQueue_.clear();
            pendingVerificationEvents_.clear();
        }
    }
    if (isBackOn) {
        resetVerification();
        sendConfiguration();
    }
}

void AnalyticsManager::adoptEnabled(bool enabled)
{
    const std::scoped_lock guard(lock_);
    enabled_ = enabled;
}

void AnalyticsManager::track(std::string name, AnalyticsParams params)
{
    AnalyticsEvent event{.name = std::move(name), .params = std::move(params)};
    {
        const std::scoped_lock guard(lock_);
        if (!webViewStarted_ || !webViewConfigured_) {
            preInitQueue_.push_back(std::move(event));
            return;
        }
    }
    deliver(event);
}

void AnalyticsManager::trackAppStart()
{
    trackIfEnabled("app_start", {.category = "application", .action = "start", .label = "Corvane"});
}

void AnalyticsManager::trackAppEnd()
{
    const auto length = std::chrono::duration_cast<std::chrono::seconds>(clock_.now() - sessionStartTime_);
    trackIfEnabled("app_end", {.category = "application", .action = "end", .label = "Corvane"},
                   {{"session_duration_seconds", std::int64_t{length.count()}}});
}

void AnalyticsManager::trackUICreated()
{
    trackIfEnabled("ui_created", {.category = "application", .action = "create", .label = "MainWindow"});
}

void AnalyticsManager::trackRegistrationSuccess()
{
    trackIfEnabled("registration_success", {.category = "user", .action = "success", .label = "Profile"});
}

void AnalyticsManager::trackProfileDeleted()
{
    trackIfEnabled("profile_deleted", {.category = "user", .action = "remove", .label = "Profile"});
}

void AnalyticsManager::trackFirstUse()
{
    trackIfEnabled("first_use", {.category = "user", .action = "first_use", .label = "Corvane"});
}

void AnalyticsManager::trackPageView(std::string_view label)
{
    trackNavigation(label, "view", "page_view");
}

void AnalyticsManager::trackButtonClick(std::string_view label)
{
    trackNavigation(label, "click", "button_click");
}

void AnalyticsManager::trackMenuOpen()
{
    trackIfEnabled("menu_open", {.category = "menu", .action = "open", .label = "MainMenu"});
}

void AnalyticsManager::trackMenuClick(std::string_view label)
{
    trackIfEnabled("menu_click", {.category = "menu", .action = "click", .label = label});
}

void AnalyticsManager::trackListUpdateCheck(std::string_view result)
{
    trackIfEnabled("update_check_list", {.category = "system", .action = "check", .label = result});
}

void AnalyticsManager::trackAppUpdateCheck(std::string_view result)
{
    trackIfEnabled("update_check_app", {.category = "system", .action = "check", .label = result});
}

void AnalyticsManager::trackServiceSelected(std::string_view name)
{
    trackIfEnabled("service_selected", {.category = "service", .action = "select", .label = name});
}

void AnalyticsManager::trackAnalyticsToggled(bool enabled)
{
    trackIfEnabled("analytics_toggled",
                   {.category = "settings", .action = enabled ? "enable" : "disable", .label = ""});
}

void AnalyticsManager::trackSettingsChanged()
{
    trackIfEnabled("settings_changed", {.category = "settings", .action = "update", .label = "Settings"});
}

void AnalyticsManager::trackDonationClick()
{
    trackIfEnabled("donation_click", {.category = "user", .action = "click", .label = "PayPal"});
}

std::vector<AnalyticsEvent> AnalyticsManager::preInitQueue() const
{
    const std::scoped_lock guard(lock_);
    return preInitQueue_;
}

void AnalyticsManager::trackIfEnabled(std::string_view name, const Description& description, AnalyticsParams further)
{
    if (!enabled_)
        return;
    auto params = std::move(further);
    params.emplace("event_category", std::string(description.category));
    params.emplace("event_action", std::string(description.action));
    if (!description.label.empty())
        params.emplace("event_label", std::string(description.label));
    track(std::string(name), std::move(params));
}

void AnalyticsManager::trackNavigation(std::string_view label, std::string_view action, std::string_view event)
{
    trackIfEnabled(event, {.category = "navigation", .action = action, .label = label});
}

} // namespace corvane
