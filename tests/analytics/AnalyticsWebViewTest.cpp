#include "analytics/AnalyticsWebView.h"

#include "analytics/AnalyticsWorld.h"

#include <cmath>

namespace corvane {
namespace {

using Lines = std::vector<std::string>;

class AnalyticsWebViewTest : public AnalyticsWorld {
protected:
    AnalyticsWebViewTest()
    {
        webView->setSignals({.onReady = [this] { heard.emplace_back("ready"); },
                             .onConfigured = [this] { heard.emplace_back("configured"); },
                             .onCollectVerified = [this] { heard.emplace_back("verified"); }});
    }

    Lines heard;
};

TEST_F(AnalyticsWebViewTest, LoadsThePageFromTheLoopbackServerOrElseUnderItsOwnScheme)
{
    const std::string served = "<p>false false</p>";
    webView->setUp();
    webView->setUp();
    EXPECT_EQ(page.made, 1);
    EXPECT_EQ(server.starts, 1);
    EXPECT_EQ(server.html, served);
    EXPECT_EQ(page.loads, Lines());
    server.succeed("http://127.0.0.1:1234/analytics.html");
    EXPECT_EQ(page.loads, Lines{"http://127.0.0.1:1234/analytics.html"});

    webView = std::make_shared<AnalyticsWebView>(AnalyticsWebView::Parts{page, server, resources, endpoints, queue});
    webView->setUp();
    server.fail();
    EXPECT_EQ(page.loads.back(), "corvane-analytics://127.0.0.1/analytics.html");
    EXPECT_EQ(page.configuration.scheme, "corvane-analytics");
    EXPECT_EQ(page.configuration.messageHandler, "analyticsBridge");
    EXPECT_EQ(page.configuration.answerRequest("corvane-analytics://127.0.0.1/other"), served);
    const auto refused = page.configuration.answerRequest("");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().domain, "AnalyticsURLSchemeHandler");
    EXPECT_EQ(refused.error().code, 1);
}

TEST_F(AnalyticsWebViewTest, LoadsNothingWithoutAPageThatCanBeRead)
{
    resources.files["analytics_webview.html"] = "<p>\xFF</p>";
    webView->setUp();
    EXPECT_EQ(page.made, 1);
    EXPECT_EQ(server.starts, 0);
    EXPECT_EQ(page.loads, Lines());
}

TEST_F(AnalyticsWebViewTest, HoldsMessagesUntilThePageIsConfiguredAndKeepsTheirOrder)
{
    webView->setUp();
    webView->sendMessage({{"n", 1}});
    webView->sendMessage({{"n", 2}});
    queue.runAll();
    say("ready");
    EXPECT_EQ(page.takeScripts(), Lines());
    EXPECT_TRUE(webView->isReady());

    webView->sendMessage({{"n", 3}});
    queue.runAll();
    EXPECT_EQ(page.takeScripts(), Lines{R"(receiveNativeMessage({"n":3});)"});
    say("ready");
    EXPECT_EQ(page.takeScripts(), Lines());
    EXPECT_EQ(heard, Lines{"ready"});

    say("configured");
    EXPECT_EQ(page.takeScripts(), (Lines{R"(receiveNativeMessage({"n":1});)", R"(receiveNativeMessage({"n":2});)"}));
    EXPECT_EQ(heard, (Lines{"ready", "configured"}));
    say("configured");
    EXPECT_EQ(page.takeScripts(), Lines());
}

TEST_F(AnalyticsWebViewTest, HearsThreeSignalsInTurnsOfTheirOwnAndIgnoresTheRest)
{
    webView->setUp();
    page.say("ga_collect");
    EXPECT_EQ(heard, Lines());
    queue.runAll();
    EXPECT_EQ(heard, Lines{"verified"});
    for (const auto* body : {R"({"type":"event_sent"})", R"({"type":"event_error"})", R"({"type":"configure_error"})",
                             R"({"type":"gtag_load_error"})", R"({"type":"Ready"})", R"({"type":["ready"]})",
                             R"({"kind":"ready"})", R"("ready")", R"([{"type":"ready"}])", "null", "", "{"}) {
        page.configuration.messageReceived(body);
        queue.runAll();
        EXPECT_EQ(heard, Lines{"verified"}) << body;
    }
    EXPECT_FALSE(webView->isReady());
}

TEST_F(AnalyticsWebViewTest, WritesMessagesAsScriptLiteralsAndDropsWhatHasNone)
{
    webView->setUp();
    say("ready");
    for (const auto& [message, script] : std::vector<std::pair<Json, Lines>>{
             {{{"t", "a\"\\\n\u2028\u2029</script>"}}, {R"({"t":"a\"\\\n\u2028\u2029</script>"})"}},
             {{{"t", "ü\u2027"}}, {"{\"t\":\"ü\u2027\"}"}},
             {{{"n", 2.0}, {"b", true}, {"i", -1}}, {R"({"b":true,"i":-1,"n":2.0})"}},
             {Json::object(), {"{}"}},
             {{{"t", "\xFF"}}, {}},
             {{{"p", {{"n", std::nan("")}}}}, {}},
             {{{"n", HUGE_VAL}}, {}},
         }) {
        webView->sendMessage(message);
        queue.runAll();
        EXPECT_EQ(page.takeScripts(), script.empty() ? Lines() : Lines{"receiveNativeMessage(" + script[0] + ");"});
    }
}

TEST_F(AnalyticsWebViewTest, NothingComesOfWhatArrivesAfterItsEnd)
{
    webView->setUp();
    webView->sendMessage({{"n", 1}});
    page.say("ready");
    page.say("configured");
    webView.reset();
    queue.runAll();
    server.succeed("http://127.0.0.1:1234/analytics.html");
    page.say("ready");
    EXPECT_TRUE(page.configuration.answerRequest("corvane-analytics://127.0.0.1/").has_value());
    queue.runAll();
    EXPECT_EQ(page.loads, Lines());
    EXPECT_EQ(page.scripts, Lines());
    EXPECT_EQ(heard, Lines());
}

} // namespace
} // namespace corvane
