#include "screens/SettingsModel.h"

#include "screens/DialogWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

class SettingsModelTest : public ::testing::Test, protected DialogWorld {
protected:
    SettingsModelTest() { open(); }

    void open()
    {
        state.showSettings.set(true);
        model.appear();
        writes = files.writes;
    }

    /// A settings file of a person's own making.
    void settle(const AppSettings& settings)
    {
        settingsManager.updateSettings(settings);
        open();
    }

    int newWrites() const { return files.writes - writes; }
    const AppSettings& settings() const { return *settingsManager.settings(); }

    SettingsModel model{state, settingsManager, analytics, endpoints};
    int writes = 0;
};

TEST_F(SettingsModelTest, AcceptingWithoutAChangeOnlySetsTheAnalyticsSwitchAgain)
{
    analytics.adoptEnabled(false); // somebody else's doing
    model.accept();
    EXPECT_EQ(newWrites(), 0);
    EXPECT_TRUE(events().empty());
    EXPECT_FALSE(*state.showSettings);
    analytics.trackSettingsChanged();
    EXPECT_EQ(events().size(), 1U) << "analytics is off";
}

TEST_F(SettingsModelTest, ReportsSwitchingAnalyticsOffBeforeItIsOff)
{
    std::vector<std::string> before;
    // Hears of the change first, as it observes the settings since the beginning: what is recorded by then has been
    // recorded while analytics was on.
    follows = settingsManager.settings().observe([&](const AppSettings& changed) {
        before = events();
        analytics.setEnabled(changed.AnalyticsEnabled == "On");
    });
    model.enableAnalytics(false);
    EXPECT_EQ(settings().AnalyticsEnabled, "On");
    model.accept();
    EXPECT_EQ(before, (std::vector<std::string>{"analytics_toggled disable", "settings_changed update"}));
    EXPECT_EQ(settings().AnalyticsEnabled, "Off");
    EXPECT_EQ(newWrites(), 1);
    analytics.trackSettingsChanged();
    EXPECT_TRUE(events().empty()) << "analytics is still on";
}

TEST_F(SettingsModelTest, ReportsSwitchingAnalyticsOnOnlyOnceItIsOn)
{
    settle({.AnalyticsEnabled = "Off"});
    model.enableAnalytics(true);
    model.accept();
    EXPECT_EQ(events(), std::vector<std::string>{"analytics_toggled enable"});
    EXPECT_EQ(settings().AnalyticsEnabled, "On");
}

TEST_F(SettingsModelTest, ThrowsTheDraftAwayUnlessItIsAccepted)
{
    const auto original = settings();
    for (const bool byPolicy : {false, true}) {
        model.pickDialogTheme(3);
        model.pickWindowTheme(2);
        model.allowSiteListUpdates(false);
        EXPECT_EQ(model.draft()->DialogTheme, "chiseled_steel");
        byPolicy ? model.showPrivacyPolicy() : model.cancel();
        EXPECT_FALSE(*state.showSettings);
        EXPECT_EQ(settings(), original);
        EXPECT_EQ(newWrites(), 0);
        open();
        EXPECT_EQ(*model.draft(), original);
    }
    EXPECT_EQ(pendingAddress(), "https://publish.test/Corvane/privacypolicy.html#usagedata");
    EXPECT_TRUE(events().empty());
}

TEST_F(SettingsModelTest, KeepsTextsThatItDoesNotKnowUntilThePersonPicks)
{
    const AppSettings unknown{.AllowSiteListUpdates = "yes",
                              .AnalyticsEnabled = "on",
                              .AppTheme = "Sepia",
                              .DialogTheme = "Dark",
                              .SitesSourceUrl = "https://h/"};
    settle(unknown);
    EXPECT_EQ(model.windowTheme(), std::nullopt);
    EXPECT_EQ(model.dialogTheme(), std::nullopt);
    EXPECT_FALSE(model.isAnalyticsEnabled() || model.allowsSiteListUpdates());

    // A view that shows the draft says so of its switches and lists, and changes nothing by it.
    model.enableAnalytics(false);
    model.allowSiteListUpdates(false);
    model.pickWindowTheme(static_cast<std::size_t>(-1));
    model.pickDialogTheme(static_cast<std::size_t>(-1));
    model.accept();
    EXPECT_EQ(settings(), unknown);
    EXPECT_EQ(newWrites(), 0);

    open();
    model.pickWindowTheme(1);
    model.pickDialogTheme(4);
    model.allowSiteListUpdates(true);
    EXPECT_EQ(model.windowTheme(), 1U);
    EXPECT_EQ(model.dialogTheme(), 4U);
    model.accept();
    auto picked = unknown;
    picked.AppTheme = "Light";
    picked.DialogTheme = "corvane";
    picked.AllowSiteListUpdates = "On";
    EXPECT_EQ(settings(), picked) << "and the address of the list survives";
}

} // namespace
} // namespace corvane::testing
