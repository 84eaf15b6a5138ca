#include "screens/AboutModel.h"

#include "screens/AnalyticsConsentModel.h"
#include "screens/DialogWorld.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

class AboutModelTest : public ::testing::Test, protected DialogWorld {
protected:
    AboutModelTest() { state.showAbout.set(true); }

    AboutModel model{{.appState = state,
                      .settingsManager = settingsManager,
                      .analytics = analytics,
                      .resources = resources,
                      .desktop = desktop,
                      .endpoints = endpoints,
                      .app = info}};
};

TEST_F(AboutModelTest, NamesVersionAndBuildDate)
{
    EXPECT_EQ(model.versionLine(), "Version 1.2  |  Aug 12, 2026");
    info.shortVersion.clear();
    EXPECT_EQ(model.versionLine(), "Version 1.0  |  Aug 12, 2026");
}

TEST_F(AboutModelTest, WhitensTheSupportAddressInTwoThemesOfAnyCase)
{
    for (const auto& [theme, isWhite] : std::vector<std::pair<std::string, bool>>{
             {"default", true}, {"DARK", true}, {"Default", true}, {"light", false}, {"corvane", false}, {"", false}}) {
        change(&AppSettings::DialogTheme, theme);
        EXPECT_EQ(model.hasWhiteSupportAddress(), isWhite) << theme;
    }
}

TEST_F(AboutModelTest, WritesToSupportAndStays)
{
    endpoints.supportMail = "help@corvane.test";
    model.writeToSupport();
    EXPECT_EQ(desktop.calls, std::vector<std::string>{
                                 "open mailto:help@corvane.test?subject=Corvane%20App:%20Support%20and%20Feedback"});
    EXPECT_TRUE(*state.showAbout);
    EXPECT_EQ(pendingAddress(), "none");
}

TEST_F(AboutModelTest, ShowsItsPagesInTheMainBrowserAndCloses)
{
    model.showSoftwareLicense(); // there is none
    EXPECT_TRUE(*state.showAbout);
    EXPECT_EQ(pendingAddress(), "none");

    resources.files["SoftwareLicense.html"] = "MIT";
    endpoints.donationAccount = "A1";
    const std::vector<std::pair<void (AboutModel::*)(), std::string>> pages{
        {&AboutModel::showSoftwareLicense, "file:///resources/SoftwareLicense.html"},
        {&AboutModel::showPrivacyPolicy, "https://publish.test/Corvane/privacypolicy.html"},
        {&AboutModel::donate, "http://127.0.0.1:3002/donate/?business=A1&no_recurring=0&currency_code=USD"}};
    for (const auto& [show, address] : pages) {
        state.showAbout.set(true);
        (model.*show)();
        EXPECT_EQ(pendingAddress(), address);
        EXPECT_FALSE(*state.showAbout) << address;
    }
    EXPECT_EQ(events(), std::vector<std::string>{"donation_click click"});
}

TEST(SoftwareLicenseTest, SaysOnTheShippedPageWhatTheLicenceFileSays)
{
    const auto words = [](const std::string& file, bool isHTML) {
        std::ifstream input(CORVANE_SOURCE_DIR "/" + file);
        std::string text;
        bool isInTag = false;
        char last = ' ';
        for (const char c : std::string(std::istreambuf_iterator<char>(input), {})) {
            isInTag = (isInTag || (isHTML && c == '<')) && last != '>';
            const char shown = isInTag || c == '\n' ? ' ' : c;
            if (shown != ' ' || !text.ends_with(' '))
                text += shown;
            last = c;
        }
        return text;
    };
    const auto licence = words("LICENSE", false);
    ASSERT_TRUE(licence.starts_with("MIT License Copyright"));
    EXPECT_TRUE(words("resources/SoftwareLicense.html", true).contains(licence));
}

class AnalyticsConsentModelTest : public ::testing::Test, protected DialogWorld {
protected:
    AnalyticsConsentModelTest() { state.setFirstUse(false); }

    /// First use begins and ends once more.
    bool isAskedAgain()
    {
        state.setFirstUse(true);
        state.setFirstUse(false);
        return *state.showAnalyticsConsent;
    }

    AnalyticsConsentModel model{state, settingsManager, analytics, defaults, endpoints};
};

TEST_F(AnalyticsConsentModelTest, AppliesAnAnswerAtOnceAndNeverAsksAgain)
{
    struct Case {
        std::string before;
        bool answer = false;
        std::vector<std::string> heard; // while the settings change
        std::vector<std::string> left;
    };
    for (const auto& [before, answer, heard, left] : std::vector<Case>{{"On", false, {"analytics_toggled disable"}, {}},
                                                                       {"Off", true, {}, {}},
                                                                       {"On", true, {}, {"analytics_toggled enable"}},
                                                                       {"Off", false, {}, {}}}) {
        change(&AppSettings::AnalyticsEnabled, before);
        analytics.setEnabled(false);
        analytics.setEnabled(before == "On"); // with nothing waiting
        state.showAnalyticsConsent.set(true);
        std::vector<std::string> recorded;
        follows = settingsManager.settings().observe([&](const AppSettings&) { recorded = events(); });

        model.answer(answer);
        EXPECT_EQ(recorded, heard) << before << answer;
        EXPECT_EQ(events(), left) << before << answer;
        EXPECT_EQ(settingsManager.settings()->AnalyticsEnabled, answer ? "On" : "Off");
        EXPECT_FALSE(*state.showAnalyticsConsent);
        EXPECT_FALSE(isAskedAgain());
        follows.end();
    }
}

TEST_F(AnalyticsConsentModelTest, AsksAgainAfterThePolicyWasRead)
{
    const auto settings = *settingsManager.settings();
    ASSERT_TRUE(*state.showAnalyticsConsent);
    model.showPrivacyPolicy();
    EXPECT_FALSE(*state.showAnalyticsConsent);
    EXPECT_EQ(pendingAddress(), "https://publish.test/Corvane/privacypolicy.html#usagedata");
    EXPECT_EQ(*settingsManager.settings(), settings);
    EXPECT_TRUE(isAskedAgain());
}

} // namespace
} // namespace corvane::testing
