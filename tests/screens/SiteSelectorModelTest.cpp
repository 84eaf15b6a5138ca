#include "screens/SiteSelectorModel.h"

#include "analytics/AnalyticsManager.h"
#include "screens/SiteFilter.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

class SiteSelectorModelTest : public ::testing::Test {
protected:
    SiteSelectorModelTest()
    {
        defaults.setBoolean("FirstUse", false);
        analytics.adoptEnabled(true);
        sites.set({{"Echo", "https://echo.example/", "Repeats"},
                   {"Broken", "not an address", ""},
                   {"Script", "javascript:alert(1)", ""},
                   {"Echo", "https://second.example/", "Hidden by the first"}});
    }

    std::string pending() const { return *state.pendingLoadURL ? (*state.pendingLoadURL)->text() : "none"; }
    std::string selected() const { return *state.selectedSiteURL ? (*state.selectedSiteURL)->text() : "none"; }

    MemoryDefaultsStore defaults;
    FixedHostInfo host;
    ManualClock clock;
    AppInfo info{.shortVersion = "1.2"};
    AnalyticsManager analytics{defaults, host, clock, info};
    Published<std::vector<Site>> sites;
    // A stored false is in place before the state reads it.
    MemoryDefaultsStore& stored = (defaults.setBoolean("FirstUse", false), defaults);
    AppState state{stored, analytics};
    SiteSelectorModel model{state, sites, defaults, analytics};
};

TEST_F(SiteSelectorModelTest, OpensAndRemembersTheFirstServiceOfTheName)
{
    model.appear();
    EXPECT_TRUE(*model.includeServicePlaceholder);
    EXPECT_EQ(model.shownChoice(), SiteSelectorModel::placeholderEntry);

    model.choose("Echo");
    EXPECT_FALSE(*model.includeServicePlaceholder);
    EXPECT_EQ(model.shownChoice(), "Echo");
    EXPECT_EQ(defaults.string("siteIndex"), "Echo");
    EXPECT_EQ(selected(), "https://echo.example/");
    EXPECT_EQ(pending(), "https://echo.example/");
    EXPECT_EQ(analytics.preInitQueue().size(), 1U);

    state.pendingLoadURL.set(std::nullopt);
    model.choose("Echo"); // No change, no load.
    EXPECT_EQ(pending(), "none");
}

TEST_F(SiteSelectorModelTest, RemembersAServiceWithoutAnAddressButLoadsNothing)
{
    for (const auto* service : {"Broken", "Script", "Gone"}) {
        model.choose(service);
        EXPECT_EQ(defaults.string("siteIndex"), service);
        EXPECT_EQ(pending(), "none") << service;
        EXPECT_EQ(selected(), "none") << service;
    }
    EXPECT_TRUE(analytics.preInitQueue().empty());
    EXPECT_FALSE(*model.includeServicePlaceholder);
}

TEST_F(SiteSelectorModelTest, RestoresTheChoiceWithoutALoad)
{
    defaults.setString("siteIndex", "Echo");
    model.appear();
    EXPECT_EQ(model.shownChoice(), "Echo");
    EXPECT_EQ(selected(), "https://echo.example/");
    EXPECT_EQ(pending(), "none");
    EXPECT_TRUE(analytics.preInitQueue().empty());

    sites.set({}); // An accepted catalogue drops the service: the choice stays, no entry shows it.
    EXPECT_EQ(*model.selectedSiteID, "Echo");
    EXPECT_EQ(model.shownChoice(), "");
    EXPECT_EQ(pending(), "none");
}

TEST_F(SiteSelectorModelTest, ForgetsTheChoiceWhenFirstUseBegins)
{
    model.choose("Echo");
    state.setFirstUse(true);
    EXPECT_EQ(*model.selectedSiteID, std::nullopt);
    EXPECT_TRUE(*model.includeServicePlaceholder);
    EXPECT_EQ(defaults.string("siteIndex"), std::nullopt);
}

TEST_F(SiteSelectorModelTest, LoadsTypedAddressesAndStaysInURLMode)
{
    model.choose("Echo");
    state.pendingLoadURL.set(std::nullopt);
    state.isURLMode.set(true);
    EXPECT_TRUE(*model.urlBarEditing);
    EXPECT_TRUE(*model.urlFieldFocusRequested);
    EXPECT_EQ(model.label(), "Service/URL:");

    for (const auto& [typed, expected] : std::vector<std::pair<std::string, std::string>>{
             {"  ", "none"}, {"two words", "none"}, {" host.example\n", "https://host.example"}}) {
        state.urlModeBarText.set(typed);
        model.submitAddress();
        EXPECT_EQ(pending(), expected);
        EXPECT_EQ(*state.urlModeBarText, typed);
    }
    EXPECT_TRUE(*state.isURLMode);
    EXPECT_EQ(selected(), "https://echo.example/");
    EXPECT_EQ(defaults.string("siteIndex"), "Echo");
    EXPECT_EQ(analytics.preInitQueue().size(), 1U);
}

TEST_F(SiteSelectorModelTest, ReturnsToTheServiceWhenURLModeEndsByWhateverWay)
{
    for (const bool byEscape : {true, false}) {
        model.choose("Broken");
        model.choose("Echo");
        state.isURLMode.set(true);
        state.urlModeBarText.set("host.example");
        state.pendingLoadURL.set(std::nullopt);
        byEscape ? model.leaveURLMode() : state.isURLMode.set(false);
        EXPECT_FALSE(*state.isURLMode);
        EXPECT_FALSE(*model.urlBarEditing);
        EXPECT_EQ(*state.urlModeBarText, "");
        EXPECT_EQ(*state.urlModeRestoredSiteID, std::nullopt);
        EXPECT_EQ(pending(), "https://echo.example/");
    }
}

TEST_F(SiteSelectorModelTest, LeavesURLModeWithoutALoadWhenNothingWasChosen)
{
    model.appear();
    state.isURLMode.set(true);
    model.leaveURLMode();
    EXPECT_EQ(*model.selectedSiteID, std::nullopt);
    EXPECT_EQ(pending(), "none");
}

TEST_F(SiteSelectorModelTest, PicksTheFirstServiceFoundAndNoneForAnEmptySearch)
{
    model.choose("Broken");
    EXPECT_FALSE(model.chooseFirst("  "));
    EXPECT_FALSE(model.chooseFirst("nowhere"));
    EXPECT_EQ(*model.selectedSiteID, "Broken");
    EXPECT_TRUE(model.chooseFirst("ECH"));
    EXPECT_EQ(*model.selectedSiteID, "Echo");
}

TEST_F(SiteSelectorModelTest, ListsThePlaceholderFirstAndFiltersByNameAndDescription)
{
    model.appear();
    EXPECT_EQ(model.rows("").size(), 5U);
    EXPECT_EQ(model.rows("").front().service, std::nullopt);
    EXPECT_EQ(model.rows(" REPEATS ").size(), 1U);
    sites.set({});
    EXPECT_EQ(model.rows("").size(), 1U);

    const std::vector<Site> names{{"Ärzte", "", ""}, {"arzt", "", "straße"}, {"b", "", ""}};
    EXPECT_EQ(filteredSites(names, "äRZ"), (std::vector<std::size_t>{0}));
    EXPECT_EQ(filteredSites(names, "STRASSE"), (std::vector<std::size_t>{1}));
    EXPECT_EQ(filteredSites(names, "STRAẞE"), (std::vector<std::size_t>{1}));
    EXPECT_EQ(filteredSites(names, "").size(), 3U);
}

} // namespace
} // namespace corvane::testing
