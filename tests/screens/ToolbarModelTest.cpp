#include "screens/ToolbarModel.h"

#include "screens/ScreenWorld.h"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using MenuItem = ToolbarModel::MenuItem;
using Texts = std::vector<std::string>;

const std::string server = "http://127.0.0.1:3002/Corvane/";

class ToolbarModelTest : public ::testing::Test {
protected:
    ToolbarModelTest() { world.http.respond = PublishedDocuments(&published); }

    /// A menu entry as a person sees it.
    std::string shown(MenuItem item) const
    {
        const auto& entry = *toolbar.state(item);
        return std::string(entry.title) + (entry.hasBadge ? "●" : "") + (entry.isEnabled ? "" : " (disabled)");
    }

    static std::string told(const std::optional<Alert>& alert)
    {
        return alert ? alert->message + ": " + alert->informativeText : "none";
    }

    /// Answers every request that waits and those that follow.
    void answerAll()
    {
        world.http.respond = PublishedDocuments(&published);
        for (std::size_t i = 0; i < world.http.requests().size(); ++i)
            world.http.answer(i, world.http.respond(world.http.requests()[i]));
    }

    void switchListUpdates(std::string text)
    {
        auto settings = *world.settings.settings();
        settings.AllowSiteListUpdates = std::move(text);
        world.settings.updateSettings(settings);
    }

    ScreenWorld world;
    AppState& state = *world.state;
    ToolbarModel& toolbar = *world.toolbar;
    std::map<std::string, std::string> published{
        {server + "sites/sites.json?ts=1", std::string(catalogueInUse)},
        {server + "sites/whatsnew.html?ts=1", "<p>list"},
        {server + "sites/archive/index.json?ts=1", R"({"archives":[{"file":"1.html","title":"One"}]})"},
        {server + "mac_whatsnew/whatsnew.html?ts=1", "<p>{{VERSION}}"},
        {server + "mac_whatsnew/version.json?ts=1", R"({"version":"1.2"})"},
        {server + "mac_whatsnew/Previous_Releases/index.json?ts=1",
         R"({"archives":[{"file":"1.1.html","title":"1.1"}]})"},
    };
};

TEST_F(ToolbarModelTest, ButtonsFollowTheBrowserAndAskForTheirAction)
{
    const auto enabled = [&] {
        std::array<bool, 5> answers{}; // Back, Home, Forward, Reload, Stop
        std::ranges::transform(ToolbarModel::buttons, answers.begin(),
                               [&](const auto& button) { return *toolbar.isEnabled(button.action); });
        return answers;
    };
    EXPECT_EQ(enabled(), (std::array{false, true, false, true, false}));
    for (const auto& button : ToolbarModel::buttons)
        toolbar.perform(button.action);
    EXPECT_EQ(state.pendingAction.value(), WebViewAction::reload);
    EXPECT_EQ(world.takeEvents(), (Texts{"button_click Home", "button_click Reload"}));

    state.canGoBack.set(true);
    state.canGoForward.set(true);
    state.isLoading.set(true);
    EXPECT_EQ(enabled(), (std::array{true, true, true, true, true}));
    for (const auto& button : ToolbarModel::buttons) {
        toolbar.perform(button.action);
        EXPECT_EQ(*state.pendingAction, button.action);
        state.pendingAction.set(std::nullopt);
        toolbar.press(button);
        EXPECT_EQ(*state.pendingAction, button.action);
    }
    EXPECT_EQ(world.takeEvents(),
              (Texts{"button_click Back", "button_click Back", "button_click Home", "button_click Home",
                     "button_click Forward", "button_click Forward", "button_click Reload", "button_click Reload",
                     "button_click Cancel", "button_click Cancel"}));
}

TEST_F(ToolbarModelTest, PlainEntriesOpenTheirPageOrDialogAlsoAfterFirstUse)
{
    toolbar.menuOpened();
    toolbar.choose(MenuItem::profile);
    EXPECT_EQ(world.takePending(), "http://127.0.0.1:3002/registration.html?os=macos&version=1.2");
    toolbar.choose(MenuItem::help);
    EXPECT_EQ(world.takePending(), world.endpoints.helpPage().text());
    EXPECT_FALSE(*state.showSettings || *state.showAbout);
    toolbar.choose(MenuItem::settings);
    toolbar.choose(MenuItem::about);
    EXPECT_TRUE(*state.showSettings && *state.showAbout);
    EXPECT_EQ(world.takeEvents(), (Texts{"menu_open MainMenu", "menu_click Profile", "menu_click Help",
                                         "menu_click Settings", "menu_click About"}));
}

TEST_F(ToolbarModelTest, BadgesMarkTheirEntriesAndTheMenuButton)
{
    EXPECT_FALSE(*toolbar.hasBadge());
    world.raiseBadges();
    EXPECT_EQ(shown(MenuItem::listUpdates), "Check for List Updates ●");
    EXPECT_EQ(shown(MenuItem::appUpdates), "Check for App Updates ●");
    EXPECT_EQ(shown(MenuItem::notifications), "Notifications ●");
    EXPECT_EQ(toolbar.state(MenuItem::listUpdates)->icon, "corvane-list-update-filled-symbolic");
    EXPECT_EQ(shown(MenuItem::settings), "Settings");
    world.appUpdates.hasPendingAppUpdate().set(false);
    EXPECT_TRUE(*toolbar.hasBadge());
    EXPECT_EQ(shown(MenuItem::appUpdates), "Check for App Updates");
    world.siteList.hasPendingSiteUpdate().set(false);
    EXPECT_TRUE(*toolbar.hasBadge()) << "a notification still waits";
    world.http.respond = [](const HttpRequest&) { return HttpResponse{200, R"({"notifications":[]})"}; };
    static_cast<void>(resultOf(world.pushDevices.refresh()));
    EXPECT_FALSE(*toolbar.hasBadge());
}

TEST_F(ToolbarModelTest, CatalogueUpdatesThatAreSwitchedOffStayInTheMenuButDoNothing)
{
    world.siteList.hasPendingSiteUpdate().set(true);
    for (const auto* text : {"Off", "on", ""}) {
        switchListUpdates(text);
        EXPECT_EQ(shown(MenuItem::listUpdates), "Check for List Updates ● (disabled)") << text;
        toolbar.choose(MenuItem::listUpdates);
    }
    EXPECT_EQ(shown(MenuItem::appUpdates), "Check for App Updates");
    EXPECT_TRUE(world.http.requests().empty());
    EXPECT_TRUE(world.takeEvents().empty());
    switchListUpdates("On");
    EXPECT_EQ(shown(MenuItem::listUpdates), "Check for List Updates ●");
}

TEST_F(ToolbarModelTest, OneCheckOfEachKindRunsAtATimeAndWinsOverItsBadge)
{
    world.raiseBadges();
    const auto before = world.http.requests().size();
    for (int i = 0; i < 2; ++i) {
        toolbar.choose(MenuItem::listUpdates);
        toolbar.choose(MenuItem::appUpdates);
    }
    EXPECT_EQ(world.http.requests().size(), before + 2);
    EXPECT_EQ(shown(MenuItem::listUpdates), "Checking… (disabled)");
    EXPECT_EQ(shown(MenuItem::appUpdates), "Checking… (disabled)");
    EXPECT_EQ(toolbar.state(MenuItem::listUpdates)->icon, "corvane-list-update-symbolic");
    EXPECT_TRUE(*toolbar.hasBadge());

    std::string whenOpened;
    const auto opening = state.activeWhatsNew.observe([&](const auto&) { whenOpened += shown(MenuItem::listUpdates); });
    EXPECT_TRUE(world.http.answer(before, std::unexpected(Error{})));
    EXPECT_EQ(shown(MenuItem::listUpdates), "Check for List Updates ●");
    EXPECT_EQ(shown(MenuItem::appUpdates), "Checking… (disabled)");
    answerAll();
    EXPECT_EQ(shown(MenuItem::appUpdates), "Check for App Updates ●");
    EXPECT_TRUE((*state.activeWhatsNew)->isAppUpdate);
    toolbar.choose(MenuItem::listUpdates); // Free again.
    EXPECT_TRUE((*state.activeWhatsNew)->isSiteListUpdate);
    EXPECT_EQ(whenOpened, "Check for List Updates ●Check for List Updates ●") << "no check is under way any more";
}

TEST_F(ToolbarModelTest, ACatalogueCheckOpensItsNotes)
{
    const std::vector<ArchiveEntry> archives{{*Url::parse(server + "sites/archive/1.html"), "One"}};
    std::string before;
    for (const bool isNewer : {false, true}) {
        if (isNewer)
            published[server + "sites/sites.json?ts=1"] = "[]";
        toolbar.choose(MenuItem::listUpdates);
        const auto& notes = **state.activeWhatsNew;
        EXPECT_NE(std::exchange(before, notes.id), notes.id);
        EXPECT_EQ(notes.whatsNewHTML, "<p>list");
        EXPECT_EQ(notes.archives, archives);
        EXPECT_TRUE(notes.isSiteListUpdate && !notes.isAppUpdate && !notes.hasAppUpdate);
        EXPECT_EQ(notes.hasSiteUpdate, isNewer);
        EXPECT_EQ(notes.pendingSiteData, isNewer ? std::optional<std::string>("[]") : std::nullopt);
        EXPECT_FALSE(notes.availableAppVersion || notes.downloadURL || notes.downloadSha256);
        EXPECT_EQ(world.takeEvents(),
                  (Texts{"menu_click Check for List Updates",
                         std::string("update_check_list ") + (isNewer ? "update_available" : "up_to_date")}));
    }
    EXPECT_EQ(world.siteList.sites()->size(), 3U) << "nothing is applied yet";

    AppSettings settings = *world.settings.settings();
    settings.SitesSourceUrl = "https://elsewhere.example/sites.json";
    world.settings.updateSettings(settings);
    toolbar.choose(MenuItem::listUpdates);
    EXPECT_EQ(world.http.requests().back().url.text(), "https://elsewhere.example/sites.json?ts=1");
}

TEST_F(ToolbarModelTest, AnApplicationCheckOpensItsNotes)
{
    const std::vector<ArchiveEntry> archives{{*Url::parse(server + "mac_whatsnew/Previous_Releases/1.1.html"), "1.1"}};
    for (const bool isNewer : {false, true}) {
        if (isNewer)
            published[server + "mac_whatsnew/version.json?ts=1"] =
                R"({"version":"1.3","downloadURL":"https://h/C.dmg","sha256":"ab"})";
        toolbar.choose(MenuItem::appUpdates);
        const auto& notes = **state.activeWhatsNew;
        EXPECT_EQ(notes.whatsNewHTML, isNewer ? "<p>1.3" : "<p>1.2");
        EXPECT_EQ(notes.archives, archives);
        EXPECT_TRUE(notes.isAppUpdate && !notes.isSiteListUpdate && !notes.hasSiteUpdate && !notes.pendingSiteData);
        EXPECT_EQ(notes.hasAppUpdate, isNewer);
        EXPECT_EQ(notes.availableAppVersion, isNewer ? std::optional<std::string>("1.3") : std::nullopt);
        EXPECT_EQ(notes.downloadURL, isNewer ? Url::parse("https://h/C.dmg") : std::nullopt);
        EXPECT_EQ(notes.downloadSha256, isNewer ? std::optional<std::string>("ab") : std::nullopt);
        EXPECT_EQ(world.takeEvents(),
                  (Texts{"menu_click Check for App Updates",
                         std::string("update_check_app ") + (isNewer ? "update_available" : "up_to_date")}));
    }
}

TEST_F(ToolbarModelTest, ChecksThatFailAreToldOneAfterTheOtherAndChangeNothing)
{
    const std::string list = "Could Not Check for Updates: Network request failed — check your connection.";
    const std::string app = "Could Not Check for Updates: Could not fetch release notes — check your connection.";
    published.clear();
    world.raiseBadges();
    answerAll();
    std::string seen;
    const auto alerts = toolbar.alert().observe([&](const auto& alert) { seen += told(alert) + "\n"; });
    toolbar.choose(MenuItem::listUpdates);
    toolbar.choose(MenuItem::appUpdates);
    EXPECT_EQ(seen, list + "\n");
    toolbar.dismissAlert();
    toolbar.dismissAlert();
    toolbar.dismissAlert();
    EXPECT_EQ(seen, list + "\nnone\n" + app + "\nnone\n");
    EXPECT_FALSE(*state.activeWhatsNew);
    EXPECT_TRUE(*toolbar.hasBadge());
    EXPECT_EQ(world.takeEvents(), (Texts{"menu_click Check for List Updates", "update_check_list network_error",
                                         "menu_click Check for App Updates", "update_check_app network_error"}));
}

TEST_F(ToolbarModelTest, NotificationsOpenTheirDialogOnlyWhenSomeAreUnread)
{
    toolbar.choose(MenuItem::notifications);
    EXPECT_EQ(told(*toolbar.alert()), "Notifications: There are no unread notifications.");
    EXPECT_FALSE(*state.showNotifications);
    toolbar.dismissAlert();
    world.raiseBadges();
    toolbar.choose(MenuItem::notifications);
    EXPECT_EQ(told(*toolbar.alert()), "none");
    EXPECT_TRUE(*state.showNotifications);
    EXPECT_EQ(world.takeEvents(), Texts(2, "menu_click Notifications"));
}

TEST_F(ToolbarModelTest, ACheckThatIsStillRunningEndsWithTheToolbar)
{
    world.http.respond = nullptr;
    toolbar.choose(MenuItem::appUpdates);
    EXPECT_EQ(world.http.waiting(), 1U);
    world.toolbar.reset();
    EXPECT_EQ(world.http.waiting(), 0U);
    EXPECT_FALSE(*world.appUpdates.isCheckingForUpdates());
}

} // namespace
} // namespace corvane::testing
