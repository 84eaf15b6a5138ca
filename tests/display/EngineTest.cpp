#include "browser/PageReport.h"
#include "display/EngineWorld.h"

#include <gtest/gtest.h>
#include <webkit/webkit.h>

namespace corvane::testing {
namespace {

std::string page(const std::string& script)
{
    return "<!doctype html><title>page</title><body><script>" + script + "</script>";
}

TEST(EngineTest, ShowsTheFixedUserAgentAndTheUsersLanguage)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page("document.title = navigator.userAgent + ' ' + navigator.language")};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    EXPECT_TRUE(iterateUntil([&] { return world.view->title() == std::string(browserUserAgent) + " de-CH"; }));
    EXPECT_EQ(world.server.requests.front().userAgent, browserUserAgent);
}

TEST(EngineTest, DeliversEveryLegalMessageInOrderAndNoOther)
{
    EngineWorld world;
    world.server.pages["/"] = {
        .body = page("const post = m => window.chrome.webview.postMessage(m);"
                     "post('success'); post({type: 'binddevice', bindingToken: 'tö\\u0000k'});"
                     "post('{\"action\":\"deleted\"}'); const ring = {}; ring.self = ring; post(ring);"
                     "post(undefined); post(() => 1); post([1]); document.title = 'posted'")};
    ASSERT_TRUE(world.open(world.server.site() + "/?Deleted"));
    ASSERT_TRUE(iterateUntil([&] { return world.told.messages.size() >= 5; }));

    std::vector<std::string> bodies;
    for (const auto& message : world.told.messages) {
        EXPECT_EQ(message.origin, world.server.site());
        EXPECT_TRUE(message.isTopFrame);
        bodies.push_back(message.body);
    }
    EXPECT_EQ(bodies,
              (std::vector<std::string>{"\"success\"", "{\"type\":\"binddevice\",\"bindingToken\":\"tö\\u0000k\"}",
                                        "\"{\\\"action\\\":\\\"deleted\\\"}\"", "[1]", "\"delete\""}));
    EXPECT_TRUE(readPageReport(bodies[1]));
}

TEST(EngineTest, HearsNothingFromOtherSitesAndSaysWhereFramesComeFrom)
{
    EngineWorld world;
    const std::string forge = "window.dispatchEvent(new CustomEvent('corvane-page-message', {detail: '\"success\"'}));"
                              "try { window.webkit.messageHandlers.corvane.postMessage('success'); } catch (e) {}"
                              "document.title = typeof window.chrome + typeof window.webkit";
    world.server.pages["/evil"] = {.body = page(forge)};
    ASSERT_TRUE(world.open(world.server.otherSite() + "/evil?deleted"));
    EXPECT_TRUE(iterateUntil([&] { return world.view->title() == "undefinedundefined"; }));

    world.server.pages["/inner"] = {.body = page("window.chrome.webview.postMessage('inner')")};
    world.server.pages["/outer"] = {.body = "<!doctype html><iframe srcdoc=\"<script>" + forge +
                                            "</script>\"></iframe><iframe src='" + world.server.otherSite() +
                                            "/evil'></iframe><iframe src='" + world.server.site() +
                                            "/inner'></iframe><script>onload = () => "
                                            "window.chrome.webview.postMessage('last')</script>"};
    ASSERT_TRUE(world.open(world.server.site() + "/outer"));
    // The page's own message comes last: it is posted when every frame has been loaded.
    ASSERT_TRUE(iterateUntil([&] { return !world.told.messages.empty() && world.told.messages.back().isTopFrame; }));
    ASSERT_EQ(world.told.messages.size(), 2U);
    EXPECT_EQ(world.told.messages[0].body, "\"inner\"");
    EXPECT_FALSE(world.told.messages[0].isTopFrame);
    EXPECT_EQ(world.told.messages[0].origin, world.server.site());
}

TEST(EngineTest, KeepsAPageWhenTheNextOneFails)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page("")};
    world.server.pages["/none"] = {.body = "", .status = 204};
    world.server.pages["/silent"] = {.body = "", .isSilent = true};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    int failures = 0;
    for (const std::string address : {"http://127.0.0.1:2/", "nowhere:x", "/none", "/silent"}) {
        const bool isSilent = address == "/silent";
        world.view->load(*Url::parse(address.starts_with('/') ? world.server.site() + address : address),
                         LoadPolicy::useCaches);
        if (isSilent) {
            ASSERT_TRUE(iterateUntil([&] { return world.server.hits("/silent") == 1; }));
            world.view->stopLoading();
        }
        ++failures;
        ASSERT_TRUE(iterateUntil([&] { return world.told.failed >= failures && !world.view->isLoading(); })) << address;
        EXPECT_EQ(world.view->address(), world.server.site() + "/") << address;
    }
    EXPECT_EQ(world.told.finished, 1);
}

TEST(EngineTest, LoadsFreshPastEveryCacheWhenAsked)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page(""), .headers = {{"Cache-Control", "max-age=3600"}}};
    world.server.pages["/other"] = {.body = page("")};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    ASSERT_TRUE(world.open(world.server.site() + "/other"));
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    EXPECT_EQ(world.server.hits("/"), 1U);
    ASSERT_TRUE(world.open(world.server.site() + "/other"));
    ASSERT_TRUE(world.open(world.server.site() + "/", LoadPolicy::ignoreCaches));
    EXPECT_EQ(world.server.hits("/"), 2U);
}

TEST(EngineTest, AsksBeforeItOpensAWindowAndKeepsTheWholeRequest)
{
    EngineWorld world;
    world.told.loadsWindows = true;
    world.server.pages["/"] = {
        .body = "<!doctype html><form method=post action=/answer target=_blank><input name=a value='b c'></form>"};
    world.server.pages["/answer"] = {.body = "<!doctype html><title>answer</title>"};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    EXPECT_TRUE(world.runUntilTitle("document.forms[0].submit()", "answer"));
    EXPECT_EQ(world.told.windows, (std::vector<std::string>{world.server.site() + "/answer"}));
    EXPECT_EQ(world.server.requests.back().method, "POST");
    EXPECT_EQ(world.server.requests.back().body, "a=b+c");
}

TEST(EngineTest, MakesThePageWaitForItsPanels)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = "<!doctype html>"};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    world.view->evaluate("alert('<b>hi</b>'); document.title = [confirm('sure?'), confirm('really?'),"
                         "prompt('name', 'Ada'), prompt('again')].join()");
    const std::vector<std::string> messages{"<b>hi</b>", "sure?", "really?", "name", "again"};
    for (const auto& message : messages) {
        ASSERT_TRUE(iterateUntil([&] { return !world.told.panels.empty(); }));
        ASSERT_EQ(world.told.panels.size(), 1U);
        const auto panel = std::move(world.told.panels.back());
        world.told.panels.clear();
        EXPECT_EQ(panel->message(), message);
        if (message == "name")
            EXPECT_EQ(panel->defaultText(), "Ada");
        if (message == "sure?" || message == "name")
            panel->accept("Grace");
    }
    EXPECT_TRUE(iterateUntil([&] { return world.view->title() == "true,false,Grace,"; }));
}

TEST(EngineTest, SurvivesItsWebProcessAndLoadsAgain)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page("")};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(world.widget));
    ASSERT_TRUE(iterateUntil([&] { return world.told.ended == 1; }));
    EXPECT_EQ(world.view->address(), "");

    const auto before = world.told.finished;
    world.view->reload();
    ASSERT_TRUE(iterateUntil([&] { return world.told.finished > before; }));
    EXPECT_EQ(world.view->address(), world.server.site() + "/");
    ASSERT_TRUE(world.open(world.server.site() + "/"));
}

TEST(EngineTest, ReloadsAFirstPageWhoseProcessDiedBeforeTheAnswer)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page(""), .isSilent = true};
    world.view->load(*Url::parse(world.server.site() + "/"), LoadPolicy::useCaches);
    ASSERT_TRUE(iterateUntil([&] { return world.server.hits("/") == 1; }));
    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(world.widget));
    ASSERT_TRUE(iterateUntil([&] { return world.told.ended == 1; }));

    world.server.pages["/"].isSilent = false;
    world.view->reload();
    EXPECT_TRUE(iterateUntil([&] { return world.told.finished == 1; }));
    EXPECT_EQ(world.view->address(), world.server.site() + "/");
}

TEST(EngineTest, NeverSavesAFileUnasked)
{
    EngineWorld world;
    world.server.pages["/saved.bin"] = {
        .body = "bytes", .type = "application/octet-stream", .headers = {{"Content-Disposition", "attachment"}}};
    world.server.pages["/"] = {.body = "<!doctype html><a download=saved.bin href='data:,y'>y</a>"};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    ASSERT_TRUE(world.runUntilTitle("document.links[0].click(); document.title = 'clicked'", "clicked"));

    const auto failures = world.told.failed;
    world.view->load(*Url::parse(world.server.site() + "/saved.bin"), LoadPolicy::useCaches);
    ASSERT_TRUE(iterateUntil([&] { return world.told.failed > failures && !world.view->isLoading(); }));
    EXPECT_EQ(world.server.hits("/saved.bin"), 1U);
    EXPECT_EQ(world.view->address(), world.server.site() + "/");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(g_get_home_dir()))
        EXPECT_NE(entry.path().filename(), "saved.bin");
}

TEST(EngineTest, KeepsItsStorageForThisUserOnly)
{
    EngineWorld world;
    world.server.pages["/"] = {.body = page("localStorage.a = document.cookie = 'a=b; max-age=9999'")};
    ASSERT_TRUE(world.open(world.server.site() + "/"));
    for (const auto& folder : {world.places.webData(), world.places.cache})
        EXPECT_EQ(std::filesystem::status(folder).permissions() & std::filesystem::perms::mask,
                  std::filesystem::perms::owner_all);
    EXPECT_TRUE(std::filesystem::exists(world.places.webData() / "cookies.sqlite"));
}

} // namespace
} // namespace corvane::testing
