#include "app/CorvaneApp.h"
#include "display/KeptEngine.h"
#include "display/PageServer.h"
#include "support/MainContext.h"
#include "support/TemporaryFolder.h"
#include "support/TestEndpoints.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>

namespace corvane::testing {
namespace {

/// The first widget below `root` of this kind whose name for assistive technology or label is `text`.
template <typename Kind>
Kind* find(Gtk::Widget& root, const std::function<bool(Kind&)>& matches)
{
    if (auto* found = dynamic_cast<Kind*>(&root); found != nullptr && matches(*found))
        return found;
    for (auto* child = root.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
        if (auto* found = find<Kind>(*child, matches))
            return found;
    }
    return nullptr;
}

Gtk::Button* button(Gtk::Widget& root, const std::string& tooltip)
{
    return find<Gtk::Button>(root,
                             [&](Gtk::Button& candidate) { return candidate.get_tooltip_text().raw() == tooltip; });
}

/// The whole program against a server in this process, with files of its own.
class WindowTest : public ::testing::Test {
protected:
    WindowTest()
    {
        server.pages["/registration.html"] = {.body = "<!doctype html><title>Register</title>"};
        server.pages["/chat"] = {.body = "<!doctype html><title>Chat</title>"};
        server.pages["/second"] = {.body = "<!doctype html><title>Second</title>"};
        std::filesystem::create_directories(places.data / "sites");
        PosixFileStore()
            .write(places.data / "sites" / "sites.json",
                   R"([{"service":"Chat","url":")" + server.site() + R"(/chat","description":"d"}])")
            .value();
    }

    void start()
    {
        app.emplace(endpointsAt(server.site() + "/", server.site() + "/"), places,
                    RendererChoice{.renderer = Renderer::software, .ownVariables = {}}, [] {});
        app->startFirstLoad();
        app->window().present();
        keepEngineOf(app->window().browser().gobj());
    }

    [[nodiscard]] bool titleBecomes(const std::string& title)
    {
        return iterateUntil([&] { return app->window().get_title().raw() == title; });
    }

    TemporaryFolder folder;
    Places places{.data = folder / "data", .cache = folder / "cache", .defaults = folder / "config/defaults.json"};
    PageServer server;
    std::optional<CorvaneApp> app;
};

TEST_F(WindowTest, RegistersChoosesAServiceAndRemembersItOverARestart)
{
    server.pages["/registration.html"].body += "<script>window.chrome.webview.postMessage('success')</script>";
    start();
    ASSERT_TRUE(titleBecomes("Register"));
    ASSERT_TRUE(iterateUntil([&] { return !*app->state().isFirstUse(); }));
    app->selector().choose("Chat");
    ASSERT_TRUE(titleBecomes("Chat"));

    server.pages["/registration.html"].body = "<!doctype html><title>Again</title>";
    app.reset();
    start();
    EXPECT_TRUE(titleBecomes("Chat"));
    EXPECT_TRUE(find<Gtk::Label>(app->window(), [](Gtk::Label& label) { return label.get_text() == "Chat"; }));
    EXPECT_EQ(server.hits("/registration.html"), 1U);
}

TEST_F(WindowTest, FollowsTheHistoryWithItsButtons)
{
    start();
    ASSERT_TRUE(titleBecomes("Register"));
    EXPECT_FALSE(button(app->window(), "Back")->get_sensitive());
    app->state().pendingLoadURL.set(Url::parse(server.site() + "/second"));
    ASSERT_TRUE(titleBecomes("Second"));
    ASSERT_TRUE(iterateUntil([&] { return button(app->window(), "Back")->get_sensitive(); }));

    g_signal_emit_by_name(button(app->window(), "Back")->gobj(), "clicked");
    ASSERT_TRUE(titleBecomes("Register"));
    ASSERT_TRUE(iterateUntil([&] { return button(app->window(), "Forward")->get_sensitive(); }));
    g_signal_emit_by_name(button(app->window(), "Forward")->gobj(), "clicked");
    ASSERT_TRUE(titleBecomes("Second"));
    g_signal_emit_by_name(button(app->window(), "Home")->gobj(), "clicked");
    ASSERT_TRUE(titleBecomes("Register"));
}

TEST_F(WindowTest, FindsUpdatesByItselfOnceTheFirstPageIsThere)
{
    server.pages["/Corvane/sites/sites.json"] = {
        .body = R"([{"service":"New","url":"https://n.example/","description":""}])"};
    server.pages["/Corvane/mac_whatsnew/whatsnew.html"] = {.body = "<p>{{VERSION}}</p>"};
    server.pages["/Corvane/mac_whatsnew/version.json"] = {.body = R"({"version":"999.1"})"};
    server.pages["/api/notifications/pending"] = {.body = R"({"notifications":[{"recipientId":7,"title":"Hello"}]})"};
    start();
    ASSERT_TRUE(iterateUntil(
        [&] { return *app->siteList().hasPendingSiteUpdate() && *app->appUpdates().hasPendingAppUpdate(); }));
    EXPECT_EQ(app->pushDevices().pending()->size(), 1U);
    EXPECT_EQ(server.requests.front().path.substr(0, 18), "/registration.html");
    EXPECT_EQ(app->siteList().sites()->front().service, "Chat"); // Found, not applied.
}

TEST_F(WindowTest, SweepsWhatAKilledRunLeftInEachOfItsFolders)
{
    namespace fs = std::filesystem;
    const std::string temporary = ".corvane-00000000-0000-4000-8000-000000000000.tmp";
    places.downloads = folder / "Downloads";
    std::vector<fs::path> folders;
    for (const auto& place : {places.data / "sites", places.data / "settings", places.updates(),
                              places.defaults.parent_path(), *places.downloads}) {
        fs::create_directories(place);
        for (const auto& name : {temporary, std::string("old.tmp")}) {
            std::ofstream(place / name) << "x";
            fs::last_write_time(place / name, fs::file_time_type::clock::now() - std::chrono::hours(1));
        }
        folders.push_back(place);
    }
    start();
    ASSERT_TRUE(iterateUntil([&] {
        return std::ranges::none_of(folders, [&](const fs::path& place) { return fs::exists(place / temporary); });
    }));
    EXPECT_TRUE(std::ranges::all_of(folders, [](const fs::path& place) { return fs::exists(place / "old.tmp"); }));
}

TEST_F(WindowTest, TakesTypedAddressesInURLMode)
{
    PosixFileStore files;
    JsonDefaultsStore(files, places.defaults).setBoolean("FirstUse", false);
    start();
    app->state().isURLMode.set(true);
    auto* field = find<Gtk::Entry>(app->window(), [](Gtk::Entry& entry) { return entry.get_mapped(); });
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->get_placeholder_text(), "Type URL and press Enter");
    ASSERT_TRUE(iterateUntil([&] { return field->get_allocated_width() >= 320; }));
    ASSERT_TRUE(iterateUntil([&] {
        auto* focus = app->window().get_focus();
        return focus != nullptr && (focus == field || focus->is_ancestor(*field));
    }));
    field->set_text(server.site() + "/second");
    g_signal_emit_by_name(field->gobj(), "activate");
    EXPECT_TRUE(titleBecomes("Second"));
    app->state().isURLMode.set(false);
    EXPECT_EQ(field->get_text(), "");
    EXPECT_FALSE(field->get_mapped());
}

/// The modal window that is seen, if there is one.
Gtk::Window* modalWindow()
{
    for (auto* window : Gtk::Window::list_toplevels()) {
        if (window->get_modal() && window->get_visible())
            return window;
    }
    return nullptr;
}

TEST_F(WindowTest, OpensEachDialogAndTakesTheRequestBackWhenItCloses)
{
    server.pages["/api/notifications/pending"] = {
        .body = R"({"notifications":[{"recipientId":1,"title":"One"},{"recipientId":2,"title":"Two"}]})"};
    start();
    ASSERT_TRUE(iterateUntil([&] { return app->pushDevices().pending()->size() == 2; }));
    auto& state = app->state();
    const WhatsNewContext notes{.whatsNewHTML = "<p>Notes</p>", .isSiteListUpdate = true, .hasSiteUpdate = true};
    const std::vector<std::tuple<std::string, std::string, std::function<void()>, std::function<bool()>>> dialogs{
        {"About Corvane", "OK", [&] { state.showAbout.set(true); }, [&] { return *state.showAbout; }},
        {"Settings", "Cancel", [&] { state.showSettings.set(true); }, [&] { return *state.showSettings; }},
        {"Notifications", "Close", [&] { state.showNotifications.set(true); },
         [&] { return *state.showNotifications; }},
        {"What's New – Service List", "Cancel", [&] { state.activeWhatsNew.set(notes); },
         [&] { return state.activeWhatsNew->has_value(); }},
        {"Analytics Data Collection", "Disable Analytics", [&] { state.showAnalyticsConsent.set(true); },
         [&] { return *state.showAnalyticsConsent; }},
    };
    for (const auto& [title, answer, ask, isAsked] : dialogs) {
        for (const bool byWindow : {false, true}) {
            ask();
            ASSERT_TRUE(iterateUntil([] { return modalWindow() != nullptr; })) << title;
            EXPECT_EQ(modalWindow()->get_title().raw(), title);
            if (byWindow) {
                modalWindow()->close();
            } else {
                auto* pressed = find<Gtk::Button>(
                    *modalWindow(), [&](Gtk::Button& button) { return button.get_label().raw() == answer; });
                ASSERT_NE(pressed, nullptr) << answer;
                g_signal_emit_by_name(pressed->gobj(), "clicked");
            }
            EXPECT_TRUE(iterateUntil([] { return modalWindow() == nullptr; })) << title;
            EXPECT_FALSE(isAsked()) << title;
        }
    }
    EXPECT_EQ(app->pushDevices().pending()->size(), 2U); // Closing the list marks nothing as read.
}

TEST_F(WindowTest, ShowsAPagesQuestionAndCancelsItWhenThePageIsLeft)
{
    start();
    ASSERT_TRUE(titleBecomes("Register"));
    server.pages["/second"].body =
        "<!doctype html><script>confirm('<b>Leave?</b>' + '\\n'.repeat(4000))</script><title>Second</title>";
    app->state().pendingLoadURL.set(Url::parse(server.site() + "/second"));
    ASSERT_TRUE(iterateUntil([&] { return modalWindow() != nullptr; }));
    EXPECT_TRUE(find<Gtk::Label>(
        *modalWindow(), [](Gtk::Label& label) { return label.get_text().raw().starts_with("<b>Leave?</b>\n"); }));
    EXPECT_TRUE(
        find<Gtk::Label>(*modalWindow(), [](Gtk::Label& label) { return label.get_text() == "127.0.0.1 says"; }));
    EXPECT_LE(modalWindow()->get_height(), 700);
    app->state().pendingLoadURL.set(Url::parse(server.site() + "/chat"));
    EXPECT_TRUE(titleBecomes("Chat"));
    EXPECT_EQ(modalWindow(), nullptr);
}

} // namespace
} // namespace corvane::testing
