#include "display/DocumentShown.h"
#include "display/EngineWorld.h"
#include "display/FullScreen.h"
#include "display/HostileTexts.h"
#include "notifications/NotificationText.h"
#include "screens/DialogWorld.h"
#include "screens/NotificationsModel.h"
#include "screens/WhatsNewModel.h"
#include "support/RunTask.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <webkit/webkit.h>

namespace corvane::testing {
namespace {

const std::vector<std::string> served{"/script",      "/style",        "/frame", "/framed",
                                      "/frame/frame", "/frame/script", "/away"};

void countFinished(WebKitWebView* /*view*/, WebKitLoadEvent event, gpointer count)
{
    *static_cast<int*>(count) += event == WEBKIT_LOAD_FINISHED ? 1 : 0;
}

gboolean countRelease(GtkEventControllerLegacy* /*events*/, GdkEvent* event, gpointer count)
{
    *static_cast<int*>(count) += gdk_event_get_event_type(event) == GDK_BUTTON_RELEASE ? 1 : 0;
    return FALSE;
}

/// A document view as a dialog has it, and what its links ask for.
struct ShownDocument {
    std::unique_ptr<DocumentView> view;
    GtkWidget* widget;
    std::vector<DocumentLink> links;
    bool follows = false; // the link that was asked about last
    bool hasAskedLater = false;
    int finished = 0; // loads
    int releases = 0; // of the pointer's button
    SignalConnection loads;
    SignalConnection events;
    std::string shown;
};

/// The models of both dialogs that show texts of a server, each with the view that it would have in the program.
class DocumentTextTest : public ::testing::Test, protected DialogWorld {
protected:
    DocumentTextTest()
    {
        for (const auto& path : served)
            server.pages[path] = {.body = "ok", .headers = {{"Cache-Control", "no-store"}}};
        server.pages["/seen"] = {.body = "<svg xmlns='http://www.w3.org/2000/svg'/>",
                                 .type = "image/svg+xml",
                                 .headers = {{"Cache-Control", "no-store"}}};
        prepare(notes, whatsNew);
        prepare(note, notifications);
    }

    template <typename Model>
    void prepare(ShownDocument& document, Model& model)
    {
        screen.empty();
        document.view = factory.makeDocumentView();
        document.widget = WebKitViewFactory::widget(*document.view);
        document.view->setReaderStyle(model.readerStyle());
        document.view->setLinkRule([&document, &model](const DocumentLink& link) {
            if (link.address == "x-later:a") {
                document.hasAskedLater = true;
                return false;
            }
            document.links.push_back(link);
            // A part of the document is scrolled to, not loaded.
            document.follows = model.followsLink(link) && !link.asksForNewWindow && !link.address.contains('#');
            return document.follows;
        });
        document.loads =
            SignalConnection(document.widget, "load-changed", G_CALLBACK(countFinished), &document.finished);
        auto* pointer = gtk_event_controller_legacy_new();
        gtk_event_controller_set_propagation_phase(pointer, GTK_PHASE_CAPTURE);
        document.events = SignalConnection(pointer, "event", G_CALLBACK(countRelease), &document.releases);
        gtk_widget_add_controller(document.widget, pointer);
        keepEngineOf(document.widget);
        // Whatever is on another host comes to the server here.
        auto* session = webkit_web_view_get_network_session(WEBKIT_WEB_VIEW(document.widget));
        const char* const direct[] = {"127.0.0.1", "localhost", nullptr};
        auto* proxy = webkit_network_proxy_settings_new(server.site().c_str(), direct);
        webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
        webkit_network_proxy_settings_free(proxy);
    }

    /// The page of release notes with this text, as the server published it.
    std::string releaseNotes(const std::string& text)
    {
        whatsNew.disappear();
        state.activeWhatsNew.set(WhatsNewContext{.whatsNewHTML = text});
        whatsNew.appear();
        return *whatsNew.page();
    }

    /// The page of the only notification, whose body the server sent.
    std::string notification(const std::string& text)
    {
        const Json sent = {{"notifications", {{{"recipientId", ++lastId}, {"title", "T"}, {"body", text}}}}};
        http.respond = [answer = compactJson(sent)](const HttpRequest& request) {
            return HttpResponse{200, request.url.path().ends_with("pending") ? answer : "{}"};
        };
        EXPECT_EQ(resultOf(manager.refresh()), 1);
        notifications.appear();
        return notifications.page();
    }

    /// Shows a page and sees that the view has exactly its bytes and that nothing but images comes of them.
    void expectHarmless(ShownDocument& document, const std::string& page)
    {
        if (page == std::exchange(document.shown, page))
            return;
        ASSERT_TRUE(showAndWait(*document.view, document.widget, page));
        expectStill(document);
        EXPECT_EQ(document.links.size(), 0U);
    }

    /// Asks the page's process three times: by then it has had its turns, and its wishes have come.
    void expectStill(ShownDocument& document, bool mayMoveOn = false)
    {
        for (int i = 0; i < 3; ++i) {
            const auto bytes = shownBytes(document.widget);
            if (!mayMoveOn)
                ASSERT_EQ(bytes, document.shown);
        }
        for (const auto* requests : {&server.requests, &server.missed}) {
            for (const auto& [path, method, agent, accept, body] : *requests)
                EXPECT_TRUE(accept.starts_with("image/") || accept.starts_with("video/*")) << path << " " << accept;
        }
        EXPECT_TRUE(std::ranges::all_of(server.requests, [](const auto& asked) {
            return asked.path.starts_with("/seen");
        })) << server.requests.back().path;
        images += server.requests.size() + server.missed.size();
        server.requests.clear();
        server.missed.clear();
    }

    /// Shows a page with a link over a plain one, clicks both, and waits until the second click has told that the first
    /// one is over, unless that leads to another page.
    void clickLink(ShownDocument& document, const std::string& link)
    {
        document.releases = document.finished = 0;
        document.follows = document.hasAskedLater = false;
        const auto text = "<a style='position:fixed;inset:0 0 25% 0' " + link +
                          ">a</a><a style='position:fixed;inset:80% 0 0 0' href='x-later:a'>b</a>";
        document.shown = &document == &note ? notification(text) : releaseNotes(text);
        ASSERT_TRUE(showAndWait(*document.view, document.widget, document.shown));
        document.finished = 0;
        ASSERT_TRUE(FullScreen::clickTwice());
        ASSERT_TRUE(iterateUntil([&] { return document.releases == 2; }));
        ASSERT_TRUE(
            iterateUntil([&] { return document.finished > 0 || (document.hasAskedLater && !document.follows); }));
        // What the rule of release notes allows may take their place, and an empty address the engine follows unasked.
        expectStill(document, document.follows || link == "href=''");
    }

    PageServer server;
    TemporaryFolder folder;
    Places places{.data = folder / "data", .cache = folder / "cache", .defaults = folder / "defaults.json"};
    WebKitViewFactory factory{places, "de_CH", Renderer::software};
    WhatsNewModel whatsNew{whatsNewServices(), [](const WhatsNewContext&) {}};
    NotificationsModel notifications{notificationsServices()};
    FullScreen screen;
    ShownDocument notes;
    ShownDocument note;
    std::int64_t lastId = 0;
    std::size_t images = 0;
};

/// What stands in the document of a notification for a text without markup.
std::string escapedLines(const std::string& text)
{
    std::string html;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n' || c == '\r')
            html += c == '\n' && i > 0 && text[i - 1] == '\r' ? "" : "<br>";
        else
            html += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
    }
    return "<p>" + html + "</p>";
}

TEST_F(DocumentTextTest, StaysAsItIsAndDoesNothing)
{
    auto texts = hostileTexts(server.site());
    const auto own = texts.size();
    const auto collected = naughtyStrings();
    texts.insert(texts.end(), collected.begin(), collected.end());
    for (const auto& text : texts) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, text);
        const auto page = releaseNotes(text);
        if (!text.empty())
            EXPECT_TRUE(page.ends_with("<body>\n" + text + "\n</body>\n</html>"));
        expectHarmless(notes, page);
        const auto body = notification(text);
        if (!text.contains("{{THEME_CSS}}"))
            EXPECT_TRUE(
                body.ends_with("<body>" + (looksLikeHTML(text) ? text : escapedLines(text)) + "</body></html>"));
        expectHarmless(note, body);
    }
    EXPECT_EQ(desktop.calls, std::vector<std::string>{});
    std::cout << "texts tried: " << own << " of our own, " << collected.size()
              << (collected.empty() ? " (the others are not there)" : " of others")
              << ", each in both dialogs; images asked for: " << images << '\n';
}

TEST_F(DocumentTextTest, DoesNothingWhenItsLinksAreClicked)
{
    const auto links = hostileLinks(server.site());
    for (auto* document : {&note, &notes}) {
        document->follows = true;
        for (const auto& link : links) {
            const ::testing::ScopedTrace trace(__FILE__, __LINE__, link);
            // A view that has been led elsewhere may still be on its way there.
            if (document->follows) {
                document == &note ? prepare(note, notifications) : prepare(notes, whatsNew);
                ASSERT_TRUE(screen.show(document->widget));
            }
            ASSERT_NO_FATAL_FAILURE(clickLink(*document, link));
        }
    }
    EXPECT_EQ(desktop.calls, std::vector<std::string>{});
    EXPECT_EQ(pendingAddress(), "none");
    std::cout << "links clicked: " << links.size() << " in both dialogs\n";
}

TEST_F(DocumentTextTest, WouldDoHarmInTheMainView)
{
    EngineWorld world;
    std::size_t harmful = 0;
    const auto texts = hostileTexts(world.server.site());
    for (const auto& path : served)
        world.server.pages[path] = {.body = "ok", .headers = {{"Cache-Control", "no-store"}}};
    for (const auto& text : texts) {
        world.server.pages["/text"] = {.body = "<!doctype html><body>" + text,
                                       .headers = {{"Cache-Control", "no-store"}}};
        ASSERT_TRUE(world.open(world.server.site() + "/text"));
        for (int i = 0; i < 3; ++i)
            static_cast<void>(shownBytes(world.widget));
        harmful += std::ranges::any_of(served, [&](const auto& path) { return world.server.hits(path) > 0; }) ? 1 : 0;
        world.server.requests.clear();
    }
    EXPECT_GT(harmful, texts.size() / 3);
    std::cout << "texts that do harm in a view without walls: " << harmful << " of " << texts.size() << '\n';
}

} // namespace
} // namespace corvane::testing
