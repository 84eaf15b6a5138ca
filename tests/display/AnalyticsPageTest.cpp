#include "analytics/AnalyticsPage.h"

#include "base/Json.h"
#include "display/PageServer.h"
#include "platform/AnalyticsLocalHTTPServer.h"
#include "platform/WebKitViewFactory.h"
#include "support/MainContext.h"
#include "support/TemporaryFolder.h"
#include "support/TestEndpoints.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtkmm/window.h>

namespace corvane::testing {
namespace {

constexpr const char* schemeAddress = "corvane-analytics://127.0.0.1/analytics.html";

/// A tag that works off the page's queue as real ones do: an event goes out by beacon, or by fetch when its name says
/// so, with all that was set before; it fails over an event named "broken".
constexpr const char* tag = R"(
{
  const source = document.currentScript.src;
  const told = {source};
  const work = ([command, name, value]) => {
    if (name === "broken")
      throw new Error(name);
    if (command === "js")
      told.starts = (told.starts ?? 0) + 1;
    else if (command === "event") {
      const address = new URL("/g/collect", source);
      const body = JSON.stringify({...told, name, params: value, page: location.href, charset: document.characterSet,
                                   title: document.title});
      name === "fetched" ? fetch(address, {method: "POST", mode: "no-cors", body}) : navigator.sendBeacon(address, body);
    } else
      told[name] = value;
  };
  const queue = window.dataLayer;
  queue.forEach(work);
  queue.push = work;
}
)";

/// The program's own page in a hidden view, as it is served, with a tag of the test.
class AnalyticsPageTest : public ::testing::Test {
protected:
    AnalyticsPageTest()
    {
        endpoints.tag = *Url::parse(server.site() + "/gtag/js?version=1");
        endpoints.measurementId = "G-A1B2C3D4E5";
        server.pages["/gtag/js"] = {.body = tag, .type = "text/javascript"};
        server.pages["/g/collect"] = {.body = "", .headers = {{"Cache-Control", "no-store"}}, .status = 204};
    }

    /// Opens the page from the loopback server, or under the custom scheme when that cannot listen on `address`.
    void open(const std::string& address = "127.0.0.1")
    {
        std::ifstream file(CORVANE_SOURCE_DIR "/resources/analytics_webview.html");
        const auto page = analyticsPage(std::string{std::istreambuf_iterator<char>(file), {}}, endpoints);
        types.clear();
        view = factory.makeHiddenPageView(
            {.messageHandler = "analyticsBridge",
             .messageReceived =
                 [this](const std::string& json) { types.push_back(*textOf(member(*parseJson(json), "type"))); },
             .scheme = "corvane-analytics",
             .answerRequest = [page](const std::string&) -> std::expected<std::string, SchemeFailure> {
                 return page;
             }});
        loopback = std::make_unique<AnalyticsLocalHTTPServer>(address);
        loopback->startServer(page, [this](std::expected<Url, LoopbackFailure> served) {
            pageAddress = served ? served->text() : schemeAddress;
            view->load(*Url::parse(pageAddress));
        });
    }

    void tell(const std::string& message) { view->evaluate("receiveNativeMessage(" + message + ");"); }

    void configure()
    {
        tell(R"({"type":"configure","config":{"client_id":"12.34_rel","send_page_views":false,"debug_mode":false},)"
             R"("properties":{"app_version":"0.75.0"}})");
    }

    [[nodiscard]] bool hears(const std::string& type, std::ptrdiff_t count = 1)
    {
        return iterateUntil([&] { return std::ranges::count(types, type) >= count; });
    }

    /// What the tag has sent, in order.
    std::vector<Json> collected() const
    {
        std::vector<Json> bodies;
        for (const auto& request : server.requests) {
            if (request.path.starts_with("/g/collect"))
                bodies.push_back(*parseJson(request.body));
        }
        return bodies;
    }

    PageServer server;
    Endpoints endpoints = endpointsAt();
    TemporaryFolder folder;
    Places places{.data = folder / "data", .cache = folder / "cache", .defaults = folder / "defaults.json"};
    WebKitViewFactory factory{places, "de_CH", Renderer::software};
    std::unique_ptr<HiddenPageView> view;
    std::unique_ptr<LoopbackServer> loopback;
    std::string pageAddress;
    std::vector<std::string> types; // of the messages from the page
};

TEST_F(AnalyticsPageTest, DeliversEventsFromEitherAddressAndSeesThemArrive)
{
    for (const std::string address : {"127.0.0.1", "203.0.113.9"}) {
        open(address);
        ASSERT_TRUE(hears("ready"));
        EXPECT_EQ(pageAddress.starts_with("http://127.0.0.1:"), address == "127.0.0.1") << pageAddress;
        configure();
        ASSERT_TRUE(hears("configured"));
        configure();
        tell(R"({"type":"event","name":"page_view","params":{"event_label":"</script>ü","n":5}})");
        ASSERT_TRUE(hears("ga_collect"));
        tell(R"({"type":"event","name":"fetched","params":{}})");
        ASSERT_TRUE(hears("ga_collect", 2));
        types.erase(std::ranges::remove(types, "ga_collect").begin(), types.end());
        EXPECT_EQ(types, (std::vector<std::string>{"ready", "configured", "configured", "event_sent", "event_sent"}));

        const auto sent = collected();
        ASSERT_EQ(sent.size(), 2U) << "the page sends nothing of its own accord";
        const auto expected = Json::parse(R"({
            "starts": 1, "user_properties": {"app_version": "0.75.0"}, "name": "page_view",
            "G-A1B2C3D4E5": {"client_id": "12.34_rel", "send_page_view": false},
            "params": {"event_label": "</script>ü", "n": 5}, "charset": "UTF-8", "title": "Corvane usage statistics"})");
        for (const auto& [key, value] : expected.items())
            EXPECT_EQ(sent[0].value(key, Json()), value) << key;
        EXPECT_EQ(sent[0].value("page", ""), pageAddress);
        EXPECT_EQ(sent[0].value("source", ""), server.site() + "/gtag/js?version=1&id=G-A1B2C3D4E5");
        EXPECT_EQ(sent[1].value("name", ""), "fetched");
        server.requests.clear();
    }
}

TEST_F(AnalyticsPageTest, SaysWhatFails)
{
    open();
    ASSERT_TRUE(hears("ready"));
    tell(R"({"type":"configure"})");
    tell(R"({"type":"event","name":"broken"})");
    tell(R"({"type":"unknown"})");
    configure();
    ASSERT_TRUE(hears("configured"));
    EXPECT_EQ(types, (std::vector<std::string>{"ready", "configure_error", "event_error", "configured"}));

    endpoints.tag = *Url::parse(server.otherSite() + "/missing");
    open();
    ASSERT_TRUE(hears("ready"));
    configure();
    tell(R"({"type":"event","name":"app_start","params":{}})");
    ASSERT_TRUE(hears("event_sent"));
    EXPECT_EQ(types, (std::vector<std::string>{"gtag_load_error", "ready", "configured", "event_sent"}));
    EXPECT_EQ(collected().size(), 0U);
}

TEST_F(AnalyticsPageTest, WorksWhileTheWindowIsMinimised)
{
    Gtk::Window window;
    window.present();
    ASSERT_TRUE(iterateUntil([&] { return window.is_active(); }));
    window.minimize();
    auto* surface = GDK_TOPLEVEL(gtk_native_get_surface(GTK_NATIVE(window.gobj())));
    ASSERT_TRUE(iterateUntil([&] { return (gdk_toplevel_get_state(surface) & GDK_TOPLEVEL_STATE_MINIMIZED) != 0; }));

    open();
    ASSERT_TRUE(hears("ready"));
    configure();
    // Each event goes out only when the one before has been seen.
    for (int count = 1; count <= 3; ++count) {
        tell(R"({"type":"event","name":"button_click","params":{}})");
        ASSERT_TRUE(hears("ga_collect", count));
    }
    EXPECT_EQ(collected().size(), 3U);
}

} // namespace
} // namespace corvane::testing
