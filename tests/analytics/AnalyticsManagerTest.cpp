#include "analytics/AnalyticsManager.h"

#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/MemoryDefaultsStore.h"

#include <functional>

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct Case {
    std::function<void(AnalyticsManager&)> record;
    AnalyticsEvent event;
};

AnalyticsEvent event(std::string name, std::string category, std::string action, std::string label = "")
{
    AnalyticsParams params{{"event_category", std::move(category)}, {"event_action", std::move(action)}};
    if (!label.empty())
        params["event_label"] = std::move(label);
    return {std::move(name), std::move(params)};
}

const std::vector<Case> vocabulary{
    {&AnalyticsManager::trackAppStart, event("app_start", "application", "start", "Corvane")},
    {&AnalyticsManager::trackUICreated, event("ui_created", "application", "create", "MainWindow")},
    {&AnalyticsManager::trackRegistrationSuccess, event("registration_success", "user", "success", "Profile")},
    {&AnalyticsManager::trackProfileDeleted, event("profile_deleted", "user", "remove", "Profile")},
    {&AnalyticsManager::trackFirstUse, event("first_use", "user", "first_use", "Corvane")},
    {[](auto& m) { m.trackPageView("https://a.test"); }, event("page_view", "navigation", "view", "https://a.test")},
    {[](auto& m) { m.trackPageView(""); }, event("page_view", "navigation", "view")},
    {[](auto& m) { m.trackButtonClick("Home"); }, event("button_click", "navigation", "click", "Home")},
    {&AnalyticsManager::trackMenuOpen, event("menu_open", "menu", "open", "MainMenu")},
    {[](auto& m) { m.trackMenuClick("Help"); }, event("menu_click", "menu", "click", "Help")},
    {[](auto& m) { m.trackListUpdateCheck("x"); }, event("update_check_list", "system", "check", "x")},
    {[](auto& m) { m.trackListUpdateCheck(""); }, event("update_check_list", "system", "check")},
    {[](auto& m) { m.trackAppUpdateCheck("x"); }, event("update_check_app", "system", "check", "x")},
    {[](auto& m) { m.trackServiceSelected("A"); }, event("service_selected", "service", "select", "A")},
    {[](auto& m) { m.trackAnalyticsToggled(true); }, event("analytics_toggled", "settings", "enable")},
    {[](auto& m) { m.trackAnalyticsToggled(false); }, event("analytics_toggled", "settings", "disable")},
    {&AnalyticsManager::trackSettingsChanged, event("settings_changed", "settings", "update", "Settings")},
    {&AnalyticsManager::trackDonationClick, event("donation_click", "user", "click", "PayPal")},
};

class AnalyticsManagerTest : public ::testing::Test {
protected:
    testing::MemoryDefaultsStore defaults;
    testing::FixedHostInfo host;
    testing::ManualClock clock;
    AnalyticsManager manager{defaults, host, clock, AppInfo{}};
};

TEST_F(AnalyticsManagerTest, RecordsEveryEventOfTheVocabularyInOrder)
{
    manager.setEnabled(true);
    std::vector<AnalyticsEvent> expected;
    for (const auto& [record, recorded] : vocabulary) {
        record(manager);
        expected.push_back(recorded);
    }
    EXPECT_EQ(manager.preInitQueue(), expected);
}

TEST_F(AnalyticsManagerTest, RecordsNothingWhileOff)
{
    for (const auto& entry : vocabulary)
        entry.record(manager);
    manager.trackAppEnd();
    EXPECT_TRUE(manager.preInitQueue().empty());
}

TEST_F(AnalyticsManagerTest, SwitchingOffDropsWhatWaitsButAdoptingTheSettingDoesNot)
{
    manager.adoptEnabled(true);
    manager.trackMenuOpen();
    manager.setEnabled(true);
    manager.adoptEnabled(false);
    manager.trackMenuOpen();
    EXPECT_EQ(manager.preInitQueue().size(), 1U);

    manager.setEnabled(false);
    manager.trackAnalyticsToggled(false);
    EXPECT_TRUE(manager.preInitQueue().empty());
    manager.setEnabled(true);
    EXPECT_TRUE(manager.preInitQueue().empty());
}

TEST_F(AnalyticsManagerTest, TheEndCarriesTheLengthOfTheRunInWholeSeconds)
{
    manager.setEnabled(true);
    auto expected = event("app_end", "application", "end", "Corvane");
    for (const auto& [step, seconds] : {std::pair(999, 0), {1, 1}, {59'999, 60}, {86'400'000, 86'460}}) {
        clock.advance(std::chrono::milliseconds(step));
        manager.trackAppEnd();
        expected.params["session_duration_seconds"] = std::int64_t{seconds};
        EXPECT_EQ(manager.preInitQueue().back(), expected);
    }
}

} // namespace
} // namespace corvane
