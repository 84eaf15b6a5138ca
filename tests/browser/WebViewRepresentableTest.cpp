#include "browser/BrowserWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using Names = std::vector<std::string>;
constexpr auto registration = "http://127.0.0.1:3002/registration.html?os=macos&version=1.2";

TEST(WebViewRepresentableTest, OpensWithTheGivenPageOrTheRegistrationPage)
{
    BrowserWorld given;
    given.browser.makeView(Url::parse("https://chat.example/"));
    EXPECT_EQ(given.view().calls, (Names{"load https://chat.example/"}));

    BrowserWorld absent;
    absent.browser.makeView(std::nullopt);
    EXPECT_EQ(absent.view().calls, Names{std::string("load ") + registration});
    BrowserWorld nameless("http://127.0.0.1:3002/", true, "");
    nameless.browser.makeView(std::nullopt);
    EXPECT_EQ(nameless.view().calls, Names{"load http://127.0.0.1:3002/registration.html?os=macos"});
    EXPECT_TRUE(absent.files.folders.contains("/data"));
}

TEST(WebViewRepresentableTest, CarriesOutOneRequestATurnAndTheAddressFirst)
{
    BrowserWorld world;
    world.makeView();
    world.state.pendingAction.set(WebViewAction::reload);
    world.state.pendingLoadURL.set(Url::parse("https://a.example/"));
    EXPECT_EQ(world.view().calls, Names{});

    world.queue.runTurn();
    EXPECT_EQ(world.view().calls, (Names{"load https://a.example/"}));
    EXPECT_TRUE(*world.state.pendingLoadURL); // Cleared in a later turn, not during the update.
    EXPECT_TRUE(*world.state.pendingAction);
    world.queue.runAll();
    EXPECT_EQ(world.view().calls, (Names{"load https://a.example/", "reload"}));
    EXPECT_FALSE(*world.state.pendingLoadURL);
    EXPECT_FALSE(*world.state.pendingAction);
}

TEST(WebViewRepresentableTest, LosesNoRequestMadeBeforeTheLastOneWasCleared)
{
    BrowserWorld world;
    world.makeView();
    world.state.pendingLoadURL.set(Url::parse("https://a.example/"));
    world.queue.runTurn();
    world.state.pendingLoadURL.set(Url::parse("https://b.example/"));
    world.queue.runAll();
    world.state.pendingLoadURL.set(Url::parse("https://b.example/"));
    world.queue.runAll();
    EXPECT_EQ(world.view().calls,
              (Names{"load https://a.example/", "load https://b.example/", "load https://b.example/"}));
}

TEST(WebViewRepresentableTest, GoesHomeWhereTheStateSays)
{
    struct Case {
        bool isFirstUse;
        bool isURLMode;
        std::string typed;
        std::string selected;
        std::string expected;
    };
    for (const auto& [isFirstUse, isURLMode, typed, selected, expected] :
         std::vector<Case>{{true, false, "", "https://chat.example/", registration},
                           {false, false, "", "https://chat.example/", "https://chat.example/"},
                           {false, false, "", "", "http://127.0.0.1:3002/Corvane/help/mac/help_mac_v0.75.xx.html"},
                           {false, true, " host.example ", "https://chat.example/", "https://host.example"},
                           {false, true, "HTTP://host.example", "https://chat.example/", "HTTP://host.example"},
                           {false, true, "   ", "https://chat.example/", "https://chat.example/"},
                           {false, true, "no address", "https://chat.example/", "https://chat.example/"},
                           {false, false, "host.example", "https://chat.example/", "https://chat.example/"}}) {
        BrowserWorld world("http://127.0.0.1:3002/", isFirstUse);
        world.makeView();
        world.state.isURLMode.set(isURLMode);
        world.state.urlModeBarText.set(typed);
        world.state.selectedSiteURL.set(Url::parse(selected));
        world.state.pendingAction.set(WebViewAction::goHome);
        world.queue.runAll();
        EXPECT_EQ(world.view().calls, Names{"load " + expected}) << expected;
    }
}

TEST(WebViewRepresentableTest, NeverLoadsAScript)
{
    BrowserWorld world;
    world.makeView();
    world.state.pendingLoadURL.set(Url::parse("javascript:alert(1)"));
    world.queue.runAll();
    EXPECT_EQ(world.view().calls, Names{});
    EXPECT_FALSE(*world.state.pendingLoadURL);
}

TEST(WebViewRepresentableTest, InjectsTheColourSchemeOnlyWhenTheSettingChanges)
{
    BrowserWorld world;
    world.makeView();
    world.view().scripts.clear();
    auto changed = *world.settings.settings();
    changed.AppTheme = "Dark";
    world.settings.updateSettings(changed);
    world.queue.runAll();
    changed.DialogTheme = "light";
    world.settings.updateSettings(changed);
    world.queue.runAll();
    EXPECT_EQ(world.view().scripts, (Names{"document.documentElement.style.colorScheme = 'dark';"}));
}

} // namespace
} // namespace corvane::testing
