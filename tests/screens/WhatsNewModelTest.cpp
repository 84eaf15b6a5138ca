#include "screens/WhatsNewModel.h"

#include "screens/DialogWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

const std::string loading = "Loading…</p>";
const std::string failed = "<p style=\"color: var(--text-muted, #888);\">Archive could not be loaded.</p>";

class WhatsNewModelTest : public ::testing::Test, protected DialogWorld {
protected:
    void open(const std::optional<WhatsNewContext>& context)
    {
        model.disappear();
        state.activeWhatsNew.set(context);
        model.appear();
    }

    static WhatsNewContext withArchives()
    {
        return {.whatsNewHTML = "now",
                .archives = {{.url = *Url::parse("https://publish.test/a.html"), .title = "One"},
                             {.url = *Url::parse("https://publish.test/b.html?x=1"), .title = "Two"},
                             {.url = *Url::parse("file:///etc/passwd"), .title = "Three"}}};
    }

    void answer(std::size_t request, const std::string& body, int status = 200)
    {
        EXPECT_TRUE(http.answer(request, HttpResponse{status, body}));
    }

    /// What stands in the body of the page.
    std::string body() const
    {
        const std::string start = "<body>\n";
        const std::string end = "\n</body>\n</html>";
        const auto& page = *model.page();
        const auto begin = page.find(start) + start.size();
        EXPECT_TRUE(page.ends_with(end));
        return page.substr(begin, page.size() - begin - end.size());
    }

    bool isOpen() const { return state.activeWhatsNew->has_value(); }

    std::vector<std::string> updates;
    WhatsNewModel model{whatsNewServices(), [this](const WhatsNewContext& context) {
                            EXPECT_TRUE(isOpen());
                            updates.push_back(context.id);
                        }};
};

TEST_F(WhatsNewModelTest, SaysWhatTheContextIsAbout)
{
    struct Case {
        std::optional<WhatsNewContext> context;
        std::string title;
        std::optional<std::string> status;
        bool offersUpdate;
    };
    const std::vector<Case> cases{
        {std::nullopt, "What's New in Corvane", "New version available", false},
        {WhatsNewContext{}, "What's New in Corvane", "New version available", false},
        {WhatsNewContext{.hasSiteUpdate = true, .hasAppUpdate = true, .availableAppVersion = "3"},
         "What's New in Corvane", "Version 3", false},
        {WhatsNewContext{.isSiteListUpdate = true, .hasSiteUpdate = true}, "What's New – Service List", std::nullopt,
         true},
        {WhatsNewContext{.isSiteListUpdate = true}, "Service List – Up to Date",
         "Your service list is already up to date.", false},
        {WhatsNewContext{.isSiteListUpdate = true, .isAppUpdate = true, .hasAppUpdate = true},
         "Service List – Up to Date", "Your service list is already up to date.", true},
        {WhatsNewContext{.isAppUpdate = true, .hasAppUpdate = true, .availableAppVersion = "2.0"},
         "What's New – Corvane", "Version 2.0", true},
        {WhatsNewContext{.isAppUpdate = true, .hasAppUpdate = true}, "What's New – Corvane", "New version available",
         true},
        {WhatsNewContext{.isAppUpdate = true, .availableAppVersion = "1.2"}, "Release Notes – Corvane",
         "Your app is up to date — v1.2", false},
    };
    for (const auto& [context, title, status, offersUpdate] : cases) {
        open(context);
        EXPECT_EQ(model.title(), title);
        EXPECT_EQ(model.statusLine(), status) << title;
        EXPECT_EQ(model.offersUpdate(), offersUpdate) << title;
        EXPECT_FALSE(model.hasNavigation());
        model.showOlder();
        EXPECT_EQ(*model.currentIndex(), 0);
    }
}

TEST_F(WhatsNewModelTest, WrapsTheNotesIntoTheThemedDocument)
{
    resources.files["dark.json"] = R"({"colors":{"link":"#123456"}})";
    change(&AppSettings::DialogTheme, "Dark");
    open(WhatsNewContext{.whatsNewHTML = "<p>{{VERSION}}"});
    const auto& page = *model.page();
    EXPECT_TRUE(page.starts_with(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"UTF-8\">\n<meta name=\"viewport\" "
        "content=\"width=device-width, initial-scale=1.0\">\n<style id=\"theme-vars\">:root{--bg-1:"));
    EXPECT_TRUE(page.contains("--link:#123456;"));
    EXPECT_TRUE(page.ends_with(
        "}</style>\n<style>\n  body {\n    font-family: -apple-system, 'Helvetica Neue', sans-serif;\n    margin: 0; "
        "padding: 12px 16px;\n    background: linear-gradient(135deg, var(--bg-1, transparent), var(--bg-2, "
        "transparent));\n    color: var(--text, #1d1d1f);\n  }\n  a { color: var(--link, #0071e3); }\n  @media "
        "(prefers-color-scheme: dark) {\n    body { color: #f5f5f7; }\n    .whatsnew .item { border-left-color: "
        "#0a84ff; }\n    .whatsnew h2 { color: #ebebf5; }\n    .whatsnew .intro, .whatsnew .item-desc, .whatsnew "
        ".closing { color: #aeaeb2; }\n    .whatsnew .badge-feat { background: #1c3a5c; color: #5ac8fa; }\n    "
        ".whatsnew .badge-enh  { background: #1a3a2a; color: #30d158; }\n    .whatsnew .badge-fix  { background: "
        "#3a2510; color: #ff9f0a; }\n  }\n</style>\n</head>\n<body>\n<p>{{VERSION}}\n</body>\n</html>"))
        << page;
    EXPECT_TRUE(model.readerStyle().contains("color-scheme:dark"));
}

TEST_F(WhatsNewModelTest, FallsBackToTheShippedNotes)
{
    for (const auto& [shipped, shown] : std::vector<std::pair<std::optional<std::string>, std::string>>{
             {"{{VERSION}} of {{BUILD_DATE}}, {{VERSION}}", "1.2 of Aug 12, 2026, 1.2"},
             {"\xFF", "<p>What's New content is not available.</p>"},
             {std::nullopt, "<p>What's New content is not available.</p>"}}) {
        resources.files.clear();
        if (shipped)
            resources.files["whatsnew.html"] = *shipped;
        open(std::nullopt);
        EXPECT_EQ(body(), shown);
        open(WhatsNewContext{.whatsNewHTML = ""});
        EXPECT_EQ(body(), shown);
    }
}

TEST_F(WhatsNewModelTest, FetchesEachArchivedPageOnce)
{
    open(withArchives());
    EXPECT_TRUE(model.hasNavigation() && model.hasOlder() && !model.hasNewer());
    model.showOlder();
    EXPECT_EQ(model.title(), "One");
    EXPECT_EQ(model.statusLine(), std::nullopt);
    EXPECT_TRUE(body().ends_with(loading));
    clock.advance(std::chrono::milliseconds(5999));
    model.showOlder();
    model.showNewer(); // while both are on their way
    model.showOlder();
    ASSERT_EQ(http.requests().size(), 2U);
    EXPECT_EQ(http.requests()[0].url.text(), "https://publish.test/a.html?ts=1700000000");
    EXPECT_EQ(http.requests()[1].url.text(), "https://publish.test/b.html?x=1&ts=1700000005");

    answer(0, "<h1>{{VERSION}}</h1>"); // of the page that is not shown
    EXPECT_TRUE(body().ends_with(loading));
    answer(1, "Not here", 404);
    EXPECT_EQ(body(), "Not here") << "an error page is a page";
    model.showNewer();
    EXPECT_EQ(body(), "<h1>{{VERSION}}</h1>");
    model.showNewer();
    EXPECT_EQ(body(), "now");
    EXPECT_EQ(model.title(), "What's New in Corvane");
    model.showEntry(2);
    EXPECT_EQ(http.requests().size(), 2U);
}

TEST_F(WhatsNewModelTest, GivesAnArchivedPageThatCannotBeLoadedUpForThisShowing)
{
    const std::vector<ScriptedHttpClient::Answer> failures{std::unexpected(Error{"No route"}), HttpResponse{200, ""},
                                                           HttpResponse{200, "\xFF"}};
    for (const auto& failure : failures) {
        open(withArchives());
        model.showOlder();
        EXPECT_TRUE(http.answer(http.requests().size() - 1, failure));
        EXPECT_EQ(body(), failed);
        const auto requests = http.requests().size();
        model.showNewer();
        model.showOlder();
        EXPECT_EQ(http.requests().size(), requests);
    }
}

TEST_F(WhatsNewModelTest, StaysWithinTheManifest)
{
    open(withArchives());
    EXPECT_EQ(model.manifest().size(), 4U);
    for (const std::int64_t outside : {-1, 4, 400}) {
        model.showEntry(outside);
        EXPECT_EQ(*model.currentIndex(), 0);
    }
    model.showNewer();
    model.showEntry(3);
    EXPECT_FALSE(model.hasOlder());
    model.showOlder();
    EXPECT_EQ(*model.currentIndex(), 3);
}

TEST_F(WhatsNewModelTest, BeginsEveryShowingAnewAndLeavesNothingOnItsWay)
{
    open(withArchives());
    model.showOlder();
    model.showOlder();
    EXPECT_EQ(http.waiting(), 2U);
    model.disappear();
    EXPECT_EQ(http.waiting(), 0U);

    open(withArchives());
    EXPECT_EQ(*model.currentIndex(), 0);
    EXPECT_EQ(body(), "now");
    model.showOlder();
    EXPECT_FALSE(http.answer(0, HttpResponse{200, "late"}));
    EXPECT_TRUE(body().ends_with(loading));
    EXPECT_EQ(http.requests().size(), 3U) << "fetched again";
}

TEST_F(WhatsNewModelTest, RunsTheUpdateBeforeItClosesAndNothingElseDoes)
{
    const WhatsNewContext context{.isAppUpdate = true, .hasAppUpdate = true};
    open(context);
    model.close();
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(updates.empty());

    open(context);
    model.update();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(updates, std::vector<std::string>{context.id});

    open(context);
    const WhatsNewContext newer;
    state.activeWhatsNew.set(newer); // asked for while this one is still there
    model.close();
    EXPECT_EQ(*state.activeWhatsNew, newer);
}

TEST_F(WhatsNewModelTest, LeadsLinksWhereTheyBelong)
{
    struct Case {
        std::string address;
        std::string main, desktop;
        bool isFollowed = false;
    };
    for (const auto& [address, main, mail, isFollowed] : std::vector<Case>{
             {.address = "https://h/a", .main = "https://h/a", .desktop = ""},
             {.address = "http://h/[a]", .main = "http://h/%5Ba%5D", .desktop = ""},
             {.address = "mailto:a@b.c", .main = "", .desktop = "open mailto:a@b.c"},
             {.address = "file:///tmp/x", .main = "", .desktop = "", .isFollowed = true},
             {.address = "data:text/html,x", .main = "", .desktop = "", .isFollowed = true},
             {.address = "about:blank#part", .main = "", .desktop = "", .isFollowed = true},
             {.address = "page.html?a:b", .main = "", .desktop = "", .isFollowed = true},
             {.address = "", .main = "", .desktop = "", .isFollowed = true},
             {.address = "javascript:alert(1)", .main = "", .desktop = ""},
             {.address = "https://h:99999/", .main = "", .desktop = ""}, // no address to this program
         }) {
        open(WhatsNewContext{});
        state.pendingLoadURL.set(std::nullopt);
        desktop.calls.clear();
        EXPECT_EQ(model.followsLink({.address = address}), isFollowed) << address;
        EXPECT_EQ(pendingAddress(), main.empty() ? "none" : main);
        EXPECT_EQ(desktop.calls, mail.empty() ? std::vector<std::string>() : std::vector<std::string>{mail});
        EXPECT_EQ(isOpen(), main.empty()) << address;
    }
}

} // namespace
} // namespace corvane::testing
