#include "screens/MainWindowModel.h"

#include "screens/ActivationModel.h"
#include "screens/ScreenWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

TEST(MainWindowModelTest, OpensWithTheRememberedServiceOrTheRegistrationPage)
{
    const std::string registration = "http://127.0.0.1:3002/registration.html?os=macos&version=1.2";
    EXPECT_EQ(ScreenWorld(false, "Echo").window->initialURL().text(), "https://echo.example/");
    EXPECT_EQ(ScreenWorld(true, "Echo").window->initialURL().text(), registration);
    for (const auto* choice : {"Gone", "Script", "Bad", ""})
        EXPECT_EQ(ScreenWorld(false, choice).window->initialURL().text(), registration) << choice;
}

TEST(MainWindowModelTest, SwitchesURLModeOutsideFirstUseOnly)
{
    ScreenWorld firstUse(true, "");
    firstUse.window->toggleURLMode();
    EXPECT_FALSE(*firstUse.state->isURLMode);
    ScreenWorld later(false, "");
    later.window->toggleURLMode();
    EXPECT_TRUE(*later.state->isURLMode);
    later.window->toggleURLMode();
    EXPECT_FALSE(*later.state->isURLMode);
}

TEST(MainWindowModelTest, HearsTheProgramsNotifications)
{
    NotificationCenter notifications;
    {
        ScreenWorld world;
        world.window->observe(notifications);
        notifications.post("Corvane.toggleURLMode");
        notifications.post("Corvane.showAbout");
        EXPECT_TRUE(*world.state->isURLMode);
        EXPECT_TRUE(*world.state->showAbout);
    }
    notifications.post("Corvane.toggleURLMode"); // Nobody is left to hear it.
}

TEST(ActivationModelTest, CountsComingBackOnceAndDialogsNot)
{
    ManualMainQueue queue;
    bool isActive = false;
    int activations = 0;
    ActivationModel model(queue, [&] { return isActive; }, [&] { ++activations; });
    const auto move = [&](bool activeAfterwards) {
        model.focusMoved(); // one window loses the focus
        isActive = activeAfterwards;
        model.focusMoved(); // another may gain it
        queue.runAll();
    };
    move(true);
    EXPECT_EQ(activations, 1);
    move(true); // a dialog opens
    move(true); // and closes
    EXPECT_EQ(activations, 1);
    move(false);
    move(true);
    EXPECT_EQ(activations, 2);
}

TEST(MainWindowModelTest, ShowsTitlesThatCannotDeceive)
{
    ScreenWorld world;
    EXPECT_EQ(world.window->windowTitle(), "Corvane");
    world.state->title.set("a\nb\u202Ec\u0007");
    EXPECT_EQ(world.window->windowTitle(), "abc");
    world.state->title.set("\u202E \n");
    EXPECT_EQ(world.window->windowTitle(), "Corvane");
    std::string umlauts;
    for (int i = 0; i < 400; ++i)
        umlauts += "ä";
    world.state->title.set(umlauts);
    EXPECT_EQ(world.window->windowTitle().size(), 600U);
}

TEST(MainWindowModelTest, BadgesFollowTheirSources)
{
    ScreenWorld world;
    const auto shown = [&] {
        return std::vector{*world.window->showSiteUpdateBadge(), *world.window->showAppUpdateBadge(),
                           *world.window->showNotificationBadge()};
    };
    EXPECT_EQ(shown(), std::vector(3, false));
    world.raiseBadges();
    EXPECT_EQ(shown(), std::vector(3, true));
    world.siteList.hasPendingSiteUpdate().set(false);
    world.http.respond = [](const HttpRequest&) { return HttpResponse{200, R"({"notifications":[]})"}; };
    EXPECT_EQ(resultOf(world.pushDevices.refresh()), 0);
    EXPECT_EQ(shown(), (std::vector{false, true, false}));
}

TEST(MainWindowModelTest, NotesThatWereShownClearTheirOwnBadgeWhenTheyHaveGone)
{
    struct Case {
        WhatsNewContext notes;
        bool keepsSite, keepsApp;
    };
    for (const auto& [notes, keepsSite, keepsApp] :
         {Case{{.isSiteListUpdate = true}, false, true}, Case{{.isAppUpdate = true}, true, false}, Case{{}, true, true},
          Case{{.isSiteListUpdate = true, .isAppUpdate = true}, false, false}}) {
        ScreenWorld world;
        world.raiseBadges();
        world.state->activeWhatsNew.set(notes);
        world.queue.runAll();
        EXPECT_TRUE(*world.window->showSiteUpdateBadge() && *world.window->showAppUpdateBadge());
        world.sheets->close(Sheet::whatsNew);
        world.queue.runAll();
        EXPECT_EQ(*world.window->showSiteUpdateBadge(), keepsSite);
        EXPECT_EQ(*world.window->showAppUpdateBadge(), keepsApp);

        world.raiseBadges(); // A later check finds something again; another dialog does not count.
        world.state->showAbout.set(true);
        world.queue.runAll();
        world.sheets->close(Sheet::about);
        world.queue.runAll();
        EXPECT_TRUE(*world.window->showSiteUpdateBadge() && *world.window->showAppUpdateBadge());
    }
}

TEST(MainWindowModelTest, NotesThatAreReplacedClearTheirBadgeAndThoseNeverShownDoNot)
{
    ScreenWorld world;
    world.raiseBadges();
    world.state->activeWhatsNew.set(WhatsNewContext{.isAppUpdate = true}); // Overtaken in the same turn.
    world.state->activeWhatsNew.set(WhatsNewContext{.isSiteListUpdate = true});
    world.queue.runAll();
    world.state->activeWhatsNew.set(WhatsNewContext{});
    world.queue.runAll();
    EXPECT_FALSE(*world.window->showSiteUpdateBadge());
    EXPECT_TRUE(*world.window->showAppUpdateBadge());
}

TEST(MainWindowModelTest, LoadsAnAddressFromTheNotificationsAfterTheirDialogHasGone)
{
    ScreenWorld world;
    for (const auto* address : {"https://h/offer", "none"}) {
        world.state->showNotifications.set(true);
        world.queue.runAll();
        world.state->pendingURLAfterNotifications = Url::parse(address);
        std::string whenGone;
        const auto going = world.sheets->shown().observe([&](const auto&) { whenGone = world.takePending(); });
        world.sheets->close(Sheet::notifications);
        world.queue.runAll();
        EXPECT_EQ(whenGone, "none") << "the dialog still goes";
        EXPECT_EQ(world.takePending(), address);
        EXPECT_EQ(world.state->pendingURLAfterNotifications, std::nullopt);
    }
    world.state->pendingURLAfterNotifications = Url::parse("https://h/");
    world.state->showAbout.set(true);
    world.queue.runAll();
    world.sheets->close(Sheet::about);
    world.queue.runAll();
    EXPECT_EQ(world.takePending(), "none") << "another dialog hands nothing over";
}

TEST(MainWindowModelTest, TakesAnUpdateWhereItsLinkLeads)
{
    const std::string store = "open " + ScreenWorld().endpoints.storePage.text();
    struct Case {
        std::string link, loaded, downloaded, opened;
    };
    for (const auto& [link, loaded, downloaded, opened] : std::vector<Case>{
             {"https://h/a/C.dmg", "none", "https://h/a/C.dmg", ""},
             {"https://h/C.DMG?x=y.html#z", "none", "https://h/C.DMG?x=y.html#z", ""},
             {"https://h/C%2eDmg/", "none", "https://h/C%2eDmg/", ""},
             {"https://h/page?file=C.dmg", "https://h/page?file=C.dmg", "", ""},
             {"https://h/C.dmg/page", "https://h/C.dmg/page", "", ""},
             {"https://h/C.dmg.html", "https://h/C.dmg.html", "", ""},
             {"https://h/.dmg", "https://h/.dmg", "", ""},
             {"https://h.dmg", "https://h.dmg", "", ""},
             {"https://h/dmg", "https://h/dmg", "", ""},
             {"javascript:alert(1)", "none", "", store},
             {"", "none", "", store},
         }) {
        ScreenWorld world;
        world.window->update({.isAppUpdate = true, .downloadURL = Url::parse(link), .downloadSha256 = "ab"});
        EXPECT_EQ(world.takePending(), loaded) << link;
        EXPECT_EQ(world.http.waiting(), downloaded.empty() ? 0U : 1U) << link;
        EXPECT_EQ(*world.installer.isDownloadingDMG(), !downloaded.empty()) << link;
        EXPECT_EQ(world.desktop.calls, opened.empty() ? std::vector<std::string>() : std::vector{opened}) << link;
        if (!downloaded.empty()) {
            EXPECT_EQ(world.http.requests().front().url.text(), downloaded);
            EXPECT_TRUE(world.http.answer(0, HttpResponse{200, "another image"}));
            EXPECT_EQ((*world.installer.dmgDownloadOutcome())->identity(),
                      "err-The downloaded file is not the one that was announced.");
        }
    }
}

TEST(MainWindowModelTest, AppliesACatalogueAndDoesNothingWithoutOne)
{
    ScreenWorld world;
    world.raiseBadges();
    const auto requests = world.http.requests().size();
    world.window->update({.isSiteListUpdate = true, .hasSiteUpdate = true});
    world.window->update({});
    EXPECT_EQ(world.siteList.sites()->size(), 3U);
    EXPECT_TRUE(*world.window->showSiteUpdateBadge());

    world.window->update({.isSiteListUpdate = true,
                          .pendingSiteData = R"([{"service":"New","url":"https://n.example/","description":""}])",
                          .isAppUpdate = true});
    EXPECT_EQ(world.siteList.sites()->front().service, "New");
    EXPECT_FALSE(*world.window->showSiteUpdateBadge());
    EXPECT_EQ(world.takePending(), "none");
    EXPECT_TRUE(world.desktop.calls.empty());
    EXPECT_EQ(world.http.requests().size(), requests);
}

} // namespace
} // namespace corvane::testing
