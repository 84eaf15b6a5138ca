#include "display/DocumentShown.h"
#include "display/EngineWorld.h"
#include "display/FullScreen.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <webkit/webkit.h>

namespace corvane::testing {
namespace {

std::string image(const std::string& address)
{
    return "<img src='" + address + "'>";
}

/// Notes of every download in the program how it ends: whether it was cancelled before there was a file.
class DownloadWatch {
public:
    explicit DownloadWatch(std::vector<bool>& cancellations)
        : signal_(g_signal_lookup("download-started", WEBKIT_TYPE_NETWORK_SESSION)),
          hook_(g_signal_add_emission_hook(signal_, 0, started, &cancellations, nullptr))
    {
    }
    DownloadWatch(const DownloadWatch&) = delete;
    DownloadWatch& operator=(const DownloadWatch&) = delete;
    ~DownloadWatch() { g_signal_remove_emission_hook(signal_, hook_); }

private:
    static gboolean started(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values, gpointer noted)
    {
        auto* download = g_value_get_object(values + 1);
        const auto failed = +[](WebKitDownload*, GError* error, gpointer data) {
            static_cast<std::vector<bool>*>(data)->push_back(
                g_error_matches(error, WEBKIT_DOWNLOAD_ERROR, WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER) != FALSE);
        };
        const auto fileMade = +[](WebKitDownload*, const char*, gpointer data) {
            static_cast<std::vector<bool>*>(data)->push_back(false);
        };
        g_signal_connect(download, "failed", G_CALLBACK(failed), noted);
        g_signal_connect(download, "created-destination", G_CALLBACK(fileMade), noted);
        return TRUE;
    }

    guint signal_;
    gulong hook_;
};

/// What the profiles have in common: a factory with files of its own and a server that answers everything with "ok".
class ProfileWorld : public ::testing::Test {
protected:
    ProfileWorld()
    {
        for (const std::string path : {"/seen", "/script", "/frame", "/other", "/away", "/followed"})
            server.pages[path] = {.body = "ok", .headers = {{"Cache-Control", "no-store"}}};
    }

    std::vector<std::string> requestedPaths() const
    {
        std::vector<std::string> paths;
        paths.reserve(server.requests.size());
        for (const auto& request : server.requests)
            paths.push_back(request.path);
        return paths;
    }

    PageServer server;
    TemporaryFolder folder;
    Places places{.data = folder / "data", .cache = folder / "cache", .defaults = folder / "defaults.json"};
    WebKitViewFactory factory{places, "de_CH", Renderer::software};
};

class ProfileDocumentTest : public ProfileWorld {
protected:
    ProfileDocumentTest() : view(factory.makeDocumentView()), widget(WebKitViewFactory::widget(*view))
    {
        view->setLinkRule([this](const DocumentLink& link) {
            links.push_back(link);
            return follows;
        });
    }

    [[nodiscard]] bool showAndWait(const std::string& html) { return testing::showAndWait(*view, widget, html); }

    [[nodiscard]] bool fillScreen() { return screen.show(widget); }

    /// Clicks with a real pointer and waits until the view has asked about the link.
    [[nodiscard]] bool click()
    {
        const auto before = links.size();
        return FullScreen::click() && iterateUntil([&] { return links.size() > before; });
    }

    static std::string link(const std::string& attributes)
    {
        return "<!doctype html><a style='position:fixed;inset:0' " + attributes + ">x</a>";
    }

    std::unique_ptr<DocumentView> view;
    GtkWidget* widget;
    FullScreen screen;
    std::vector<DocumentLink> links;
    bool follows = false;
};

TEST_F(ProfileDocumentTest, LoadsImagesAndNothingElse)
{
    const auto site = server.site();
    const auto script = "new Image().src = \"" + site + "/script\"";
    ASSERT_TRUE(showAndWait(
        "<!doctype html><base href='" + site + "/'><meta http-equiv=refresh content='0;url=" + site + "/away'>" +
        "<link rel=stylesheet href='" + site + "/other'><script>" + script + "</script><script src='" + site +
        "/script'></script><iframe src='" + site + "/frame'></iframe><iframe srcdoc=\"" + image(site + "/frame") +
        "\"></iframe><object data='" + site + "/frame'></object><embed src='" + site + "/frame'><video autoplay src='" +
        site + "/other'></video><noscript>" + image(site + "/seen?noscript") +
        "</noscript><link rel=preload as=fetch crossorigin href='" + site + "/other'><style>@import '" + site +
        "/other'; body { background: url(" + site + "/seen?style) }</style><img src='data:,' onerror='" + script +
        "'>" + image("other") + image(site + "/seen?here") + image(server.otherSite() + "/seen?there")));
    // A second document: whatever the first one wanted besides has had its time.
    ASSERT_TRUE(showAndWait("<!doctype html>" + image(site + "/seen?last")));

    auto paths = requestedPaths();
    std::ranges::sort(paths);
    EXPECT_EQ(paths,
              (std::vector<std::string>{"/seen?here", "/seen?last", "/seen?noscript", "/seen?style", "/seen?there"}));
}

TEST_F(ProfileDocumentTest, LetsTheReadersStyleWinWhereItInsists)
{
    const auto background = [this](const std::string& name, const std::string& end = "") {
        return "{background-image:url(" + server.site() + "/seen?" + name + ")" + end + "}";
    };
    view->setReaderStyle("body" + background("first", " !important"));
    view->setReaderStyle("body" + background("reader", " !important") + "p" + background("polite"));
    ASSERT_TRUE(showAndWait("<!doctype html><style>body" + background("author", " !important") + "p" +
                            background("own") + "</style><p>x" + image(server.site() + "/seen?here")));
    // The engine may ask for one picture twice.
    const auto different = [this] {
        const auto paths = requestedPaths();
        return std::set<std::string>(paths.begin(), paths.end());
    };
    EXPECT_EQ(different(), (std::set<std::string>{"/seen?here", "/seen?own", "/seen?reader"}));

    view->setReaderStyle("p" + background("later", " !important")); // of the document that is there
    EXPECT_TRUE(iterateUntil([&] { return different().contains("/seen?later"); }));
}

TEST_F(ProfileDocumentTest, LoadsTheSameTextOnlyOnce)
{
    ASSERT_TRUE(showAndWait(image(server.site() + "/seen")));
    view->show(image(server.site() + "/seen"));
    EXPECT_FALSE(webkit_web_view_is_loading(WEBKIT_WEB_VIEW(widget)));
    ASSERT_TRUE(showAndWait(image(server.site() + "/other")));
    EXPECT_EQ(requestedPaths(), (std::vector<std::string>{"/seen", "/other"}));

    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(widget));
    EXPECT_TRUE(showAndWait(image(server.site() + "/other"))) << "the view was blank";
}

TEST_F(ProfileDocumentTest, AsksAboutEveryLinkAndStaysWhenRefused)
{
    ASSERT_TRUE(fillScreen());
    const auto away = server.site() + "/away";
    struct Case {
        std::string attributes;
        std::string address;
        bool asksForNewWindow = false;
    };
    const std::vector<Case> cases{
        {.attributes = "href='" + away + "'", .address = away},
        {.attributes = "href='HTTPS://Example.ORG/a b'", .address = "https://example.org/a%20b"},
        {.attributes = "href='" + away + "' target=_blank rel=noopener", .address = away, .asksForNewWindow = true},
        {.attributes = "href='mailto:someone@example.org'", .address = "mailto:someone@example.org"},
        {.attributes = "href='page.html'", .address = "page.html"},
        {.attributes = "href='#part'", .address = "about:blank#part"},
    };
    for (const auto& [attributes, address, asksForNewWindow] : cases) {
        ASSERT_TRUE(showAndWait(link(attributes)));
        links.clear();
        ASSERT_TRUE(click()) << attributes;
        ASSERT_TRUE(click()) << attributes << ": the page has gone";
        ASSERT_EQ(links.size(), 2U);
        EXPECT_EQ(links[1].address, address);
        EXPECT_EQ(links[1].asksForNewWindow, asksForNewWindow) << attributes;
    }
    EXPECT_EQ(requestedPaths(), std::vector<std::string>{});
}

TEST_F(ProfileDocumentTest, FollowsInItselfOnlyWhatTheRuleAllows)
{
    ASSERT_TRUE(fillScreen());
    follows = true;
    ASSERT_TRUE(showAndWait(link("href='" + server.site() + "/away' target=_blank")));
    ASSERT_TRUE(click());
    EXPECT_TRUE(links.back().asksForNewWindow);
    ASSERT_TRUE(click()) << "the page has gone";

    ASSERT_TRUE(showAndWait(link("href=\"data:text/html,<script>new Image().src = '" + server.site() +
                                 "/script'</script>" + image(server.site() + "/other") + "\"")));
    EXPECT_EQ(links.size(), 2U) << "asked twice about one click";
    ASSERT_TRUE(click());
    ASSERT_TRUE(iterateUntil(
        [&] { return server.hits("/other") == 1 && !webkit_web_view_is_loading(WEBKIT_WEB_VIEW(widget)); }));

    server.pages["/followed"].body = "<!doctype html><script>new Image().src = '/script'</script>" + image("/seen");
    ASSERT_TRUE(showAndWait(link("href='" + server.site() + "/followed'")));
    ASSERT_TRUE(click());
    ASSERT_TRUE(iterateUntil([&] { return server.hits("/seen") == 1; }));
    EXPECT_EQ(requestedPaths(), (std::vector<std::string>{"/other", "/followed", "/seen"}));
}

TEST_F(ProfileDocumentTest, CancelsTheDownloadThatALinkBegins)
{
    std::vector<bool> cancellations;
    const DownloadWatch watch(cancellations);
    server.pages["/saved"] = {.body = "bytes", .headers = {{"Content-Disposition", "attachment"}}};
    ASSERT_TRUE(fillScreen());
    follows = true;
    ASSERT_TRUE(showAndWait(link("href='" + server.site() + "/saved'")));
    ASSERT_TRUE(click());
    ASSERT_TRUE(iterateUntil([&] { return !cancellations.empty(); }));
    EXPECT_EQ(cancellations, std::vector<bool>{true});
}

TEST_F(ProfileDocumentTest, MayGoWhileItAsks)
{
    ASSERT_TRUE(fillScreen());
    ASSERT_TRUE(showAndWait(link("href='" + server.site() + "/away'")));
    view->setLinkRule([this](const DocumentLink& link) {
        screen.empty();
        view.reset();
        links.push_back(link);
        return true;
    });
    EXPECT_TRUE(click());
    iteratePending();
    EXPECT_FALSE(view);
}

class ProfileHiddenPageTest : public ProfileWorld {
protected:
    static constexpr const char* address = "corvane-analytics://127.0.0.1/analytics.html";

    std::unique_ptr<HiddenPageView> make()
    {
        return factory.makeHiddenPageView(
            {.messageHandler = "analyticsBridge",
             .messageReceived = [this](const std::string& json) { messages.push_back(json); },
             .scheme = "corvane-analytics",
             .answerRequest = [this](const std::string& asked) -> std::expected<std::string, SchemeFailure> {
                 asks.push_back(asked);
                 if (asked.ends_with("/none"))
                     return std::unexpected(SchemeFailure{.domain = "none", .code = 1});
                 return page;
             }});
    }

    /// A page whose script has `post` to send a message.
    static std::string scripted(const std::string& script)
    {
        return "<!doctype html><script>const post = m => "
               "window.webkit.messageHandlers.analyticsBridge.postMessage(m);" +
               script + "</script>";
    }

    [[nodiscard]] bool messagesAre(const std::vector<std::string>& expected)
    {
        const bool are = iterateUntil([&] { return messages.size() >= expected.size(); });
        EXPECT_EQ(messages, expected);
        return are;
    }

    std::string page;
    std::vector<std::string> messages;
    std::vector<std::string> asks;
};

TEST_F(ProfileHiddenPageTest, HearsThePageAndRunsScriptsInIt)
{
    server.pages["/"] = {.body = scripted("const ring = {}; ring.self = ring; post(ring); post(undefined);"
                                          "post({type: 'a\\u0000ü'}); post('x'.repeat(70000)); post('text'); post([1]);"
                                          "function receive(m) { post({got: m.n}); }")};
    const auto view = make();
    view->load(*Url::parse(server.site() + "/"));
    ASSERT_TRUE(messagesAre({R"({"type":"a\u0000ü"})", R"("text")", "[1]"}));
    view->evaluate(R"(receive({"n":1});)");
    view->evaluate("this is no script");
    view->evaluate(R"(receive({"n":2});)");
    messages.clear();
    EXPECT_TRUE(messagesAre({R"({"got":1})", R"({"got":2})"}));
}

TEST_F(ProfileHiddenPageTest, ServesItsPageUnderItsOwnScheme)
{
    page = scripted("post([location.origin, document.characterSet, document.contentType, 'ü']);"
                    "fetch('/none').catch(() => post('failed'))");
    const auto view = make();
    view->load(*Url::parse(address));
    EXPECT_TRUE(messagesAre({R"(["corvane-analytics://127.0.0.1","UTF-8","text/html","ü"])", R"("failed")"}));
    EXPECT_EQ(asks, (std::vector<std::string>{address, "corvane-analytics://127.0.0.1/none"}));
}

TEST_F(ProfileHiddenPageTest, RunsTimersAtFullRateOutsideAnyWindow)
{
    // 60 ticks take 60 seconds where timers are held back, longer than the wait.
    page = scripted("let ticks = 0; const timer = setInterval(() => {"
                    "if (++ticks === 60) { clearInterval(timer); post(ticks); } }, 20)");
    const auto view = make();
    view->load(*Url::parse(address));
    EXPECT_TRUE(messagesAre({"60"}));
}

TEST_F(ProfileHiddenPageTest, AsksTheUserForNothing)
{
    page = scripted("alert('a'); print(); post([confirm('b'), prompt('c'), window.open('/other')])");
    const auto view = make();
    view->load(*Url::parse(address));
    EXPECT_TRUE(messagesAre({"[false,null,null]"}));
}

TEST_F(ProfileHiddenPageTest, CancelsEveryDownload)
{
    std::vector<bool> cancellations;
    const DownloadWatch watch(cancellations);
    server.pages["/"] = {.body = "<!doctype html><a download href='data:,x'>x</a><a href='/saved'>y</a>" +
                                 scripted("post('here')")};
    server.pages["/saved"] = {.body = "bytes", .headers = {{"Content-Disposition", "attachment"}}};
    const auto view = make();
    view->load(*Url::parse(server.site() + "/"));
    ASSERT_TRUE(messagesAre({R"("here")"}));
    for (std::size_t i = 0; i < 2; ++i) {
        view->evaluate("document.links[" + std::to_string(i) + "].click()");
        EXPECT_TRUE(iterateUntil([&] { return cancellations.size() > i; })) << i;
    }
    EXPECT_EQ(cancellations, (std::vector<bool>{true, true}));
}

TEST_F(ProfileHiddenPageTest, ForgetsEverythingWithItsView)
{
    server.pages["/"] = {.body = scripted("post([document.cookie, localStorage.length]);"
                                          "document.cookie = 'a=b; max-age=9999'; localStorage.a = 1;")};
    auto view = make();
    for (int round = 0; round < 2; ++round) {
        view->load(*Url::parse(server.site() + "/"));
        ASSERT_TRUE(messagesAre({R"(["",0])"}));
        messages.clear();
        view = make();
    }
}

TEST_F(ProfileHiddenPageTest, KeepsItsSchemeFromTheMainView)
{
    page = scripted("post('loaded')");
    const auto view = make();
    view->load(*Url::parse(address));
    ASSERT_TRUE(messagesAre({R"("loaded")"}));

    EngineWorld world;
    world.server.pages["/"] = {.body = "<!doctype html><iframe src='" + std::string(address) + "'></iframe>"};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    world.view->load(*Url::parse(address), LoadPolicy::useCaches);
    ASSERT_TRUE(iterateUntil([&] { return world.told.failed == 1 && !world.view->isLoading(); }));
    EXPECT_EQ(world.view->address(), world.server.site() + "/");
    EXPECT_EQ(asks.size(), 1U);
}

} // namespace
} // namespace corvane::testing
