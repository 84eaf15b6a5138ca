#include "browser/BrowserWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using Names = std::vector<std::string>;

/// A panel that notes its answer.
class NotedPanel final : public ScriptPanel {
public:
    NotedPanel(Kind kind, std::string message, std::string& answer)
        : kind_(kind), message_(std::move(message)), answer_(answer)
    {
    }
    ~NotedPanel() override
    {
        if (answer_.empty())
            answer_ = "cancelled";
    }
    Kind kind() const override { return kind_; }
    std::string message() const override { return message_; }
    std::string defaultText() const override { return "suggestion"; }
    void accept(std::string_view text) override { answer_ = "ok " + std::string(text); }

private:
    Kind kind_;
    std::string message_;
    std::string& answer_;
};

class NotedWindowRequest final : public NewWindowRequest {
public:
    NotedWindowRequest(std::string address, bool& isLoaded) : address_(std::move(address)), isLoaded_(isLoaded) {}
    std::string address() const override { return address_; }
    void loadInSameView() override { isLoaded_ = true; }

private:
    std::string address_;
    bool& isLoaded_;
};

TEST(WebViewCoordinatorTest, MirrorsTheViewOnceATurnAndNeverInsideTheSignal)
{
    BrowserWorld world;
    world.makeView();
    world.view().back = true;
    world.view().shownAddress = "https://chat.example/a|b";
    world.view().shownTitle = "Chat";
    int changes = 0;
    const auto titles = world.state.title.observe([&](const auto&) { ++changes; });

    world.view().delegate->stateChanged();
    world.view().delegate->stateChanged();
    EXPECT_FALSE(*world.state.canGoBack);
    world.queue.runAll();

    EXPECT_TRUE(*world.state.canGoBack);
    EXPECT_EQ((*world.state.currentURL)->text(), "https://chat.example/a%7Cb");
    EXPECT_EQ(*world.state.title, "Chat");
    EXPECT_EQ(changes, 1);
}

TEST(WebViewCoordinatorTest, RecordsFinishedPagesAndGivesEachTheColourScheme)
{
    BrowserWorld world;
    world.makeView();
    world.view().scripts.clear();

    world.view().showPage("https://chat.example/");
    world.view().delegate->loadStarted();
    world.view().delegate->loadFailed();
    world.coordinator.applyTheme("dark");
    world.coordinator.applyTheme("Dark");
    world.view().showPage("https://chat.example/2");

    EXPECT_EQ(world.eventNames(), (Names{"page_view", "page_view"}));
    const auto script = [](const std::string& scheme) {
        return "document.documentElement.style.colorScheme = '" + scheme + "';";
    };
    EXPECT_EQ(world.view().scripts, (Names{script(""), script(""), script("dark"), script("dark")}));
}

TEST(WebViewCoordinatorTest, EndsFirstUseWhenThePageReportsSuccess)
{
    BrowserWorld world;
    world.makeView();
    world.post(R"("success")");
    EXPECT_FALSE(*world.state.isFirstUse());
    EXPECT_TRUE(*world.state.showAnalyticsConsent);
    EXPECT_EQ(world.eventNames(), (Names{"first_use", "registration_success"}));
}

TEST(WebViewCoordinatorTest, BindsWithTheTrimmedToken)
{
    BrowserWorld world;
    world.makeView();
    world.post(R"({"type":"bindDevice","bindingToken":" token "})");
    EXPECT_EQ(world.defaults.string("push_binding_token"), "token");
    EXPECT_EQ(world.http.waiting(), 1U);
}

TEST(WebViewCoordinatorTest, ReturnsToRegistrationWhenTheProfileIsDeleted)
{
    BrowserWorld world("http://127.0.0.1:3002/", false);
    world.makeView();
    world.defaults.setString("siteIndex", "Echo");
    world.post(R"("profile_deleted")");
    EXPECT_TRUE(*world.state.isFirstUse());
    EXPECT_EQ(world.defaults.string("siteIndex"), std::nullopt);
    EXPECT_EQ(world.eventNames(), (Names{"profile_deleted"}));
    EXPECT_EQ(world.view().calls, (Names{"loadFresh http://127.0.0.1:3002/registration.html?os=macos&version=1.2"}));
}

TEST(WebViewCoordinatorTest, NoticesADeletedProfileByTheAddressOfAnAllowedPageOnly)
{
    const std::vector<std::pair<std::string, bool>> cases{
        {"http://127.0.0.1:3002/done.html?state=DELETED", true},
        {"http://127.0.0.1:3002/done.html#wasDeleted", true},
        {"http://127.0.0.1:3002/deleted.html", false},
        {"http://localhost:3002/done.html?deleted", false},
        {"https://chat.example/?deleted", false},
    };
    for (const auto& [address, isDeletion] : cases) {
        BrowserWorld world("http://127.0.0.1:3002/", false);
        world.makeView();
        world.view().showPage(address);
        world.queue.runAll();
        EXPECT_EQ(*world.state.isFirstUse(), isDeletion) << address;
        EXPECT_EQ(world.view().calls.size(), isDeletion ? 1U : 0U) << address;
    }
}

TEST(WebViewCoordinatorTest, HearsOnlyTrustedPages)
{
    struct Case {
        std::string mainPage;
        std::string origin;
        bool isTop;
        std::string topOrigin;
        bool isHeard;
    };
    const std::string registration = "http://127.0.0.1:3002/registration.html";
    const std::string allowed = "http://127.0.0.1:3002";
    const std::string evil = "https://evil.example";
    for (const auto& [mainPage, origin, isTop, topOrigin, isHeard] :
         std::vector<Case>{{registration, allowed, true, allowed, true},
                           {registration, allowed, false, allowed, true},
                           {evil + "/", allowed, false, allowed, false},
                           {registration, allowed, false, evil, false}, // the last words of a frame in the page before
                           {registration, allowed, false, "null", false},
                           {registration, evil, true, evil, false},
                           {registration, evil, false, allowed, false},
                           {registration, "null", true, "null", false},
                           {registration, "null", false, allowed, false}}) {
        BrowserWorld world;
        world.makeView();
        world.view().showPage(mainPage);
        world.post({.origin = origin, .isTopFrame = isTop, .topOrigin = topOrigin, .body = R"("success")"});
        EXPECT_EQ(*world.state.isFirstUse(), !isHeard) << mainPage << " " << origin << " " << isTop << topOrigin;
    }
}

TEST(WebViewCoordinatorTest, KeepsNewWindowsInTheViewAndDropsDangerousOnes)
{
    BrowserWorld world;
    world.makeView();
    world.view().showPage("https://chat.example/");
    for (const auto& [address, isWanted] : std::vector<std::pair<std::string, bool>>{{"https://other.example/", true},
                                                                                     {"", false},
                                                                                     {"about:blank", false},
                                                                                     {"javascript:alert(1)", false},
                                                                                     {"data:text/html,x", false},
                                                                                     {"file:///etc/passwd", false}}) {
        bool isLoaded = false;
        world.view().delegate->newWindowRequested(std::make_unique<NotedWindowRequest>(address, isLoaded));
        EXPECT_EQ(isLoaded, isWanted) << address;
    }
}

TEST(WebViewCoordinatorTest, ShowsOnePanelAtATimeAndAnswersEach)
{
    BrowserWorld world;
    world.makeView();
    world.view().showPage("https://chat.example/");
    std::string first;
    std::string second;
    auto& page = *world.view().delegate;

    page.panelRequested(std::make_unique<NotedPanel>(ScriptPanel::Kind::prompt, std::string(5000, 'x'), first));
    const auto shown = *world.coordinator.panel();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->heading(), "chat.example says");
    EXPECT_EQ(shown->message(), std::string(4096, 'x') + "…");
    world.coordinator.acceptPanel("typed");
    EXPECT_EQ(first, "ok typed");

    page.panelRequested(std::make_unique<NotedPanel>(ScriptPanel::Kind::confirm, "Sure?", second));
    world.state.pendingAction.set(WebViewAction::goBack); // The engine would wait for the answer.
    world.queue.runAll();
    EXPECT_EQ(second, "cancelled");
    EXPECT_FALSE(*world.coordinator.panel());
}

TEST(WebViewCoordinatorTest, GivesUpALoadThatHasNotCommittedAfterAMinute)
{
    using namespace std::chrono_literals;
    BrowserWorld world;
    world.makeView();
    auto& view = world.view();

    view.loading = true; // An answer streams into the page while only its fragment changes: nothing to give up.
    world.coordinator.load(*Url::parse("https://chat.example/#end"), LoadPolicy::useCaches);
    world.clock.advance(61s);
    EXPECT_EQ(view.calls.size(), 1U);

    view.calls.clear();
    world.coordinator.load(*Url::parse("https://slow.example/"), LoadPolicy::useCaches);
    view.delegate->loadStarted();
    world.clock.advance(59s);
    view.delegate->loadRedirected(); // A new server gets a new minute.
    world.clock.advance(59s);
    EXPECT_EQ(view.calls, (Names{"load https://slow.example/"}));
    world.clock.advance(1s);
    EXPECT_EQ(view.calls.back(), "stopLoading");

    view.calls.clear();
    view.delegate->loadStarted();
    view.delegate->loadCommitted(); // From now on the answer may stream as long as it likes.
    world.clock.advance(1h);
    view.delegate->loadStarted();
    view.delegate->loadFailed();
    world.clock.advance(1h);
    EXPECT_EQ(view.calls, Names{});
}

TEST(WebViewCoordinatorTest, BringsAPageBackOnceWhenItsProcessDies)
{
    using namespace std::chrono_literals;
    BrowserWorld world;
    world.makeView();
    auto& view = world.view();
    view.showPage("https://chat.example/", "Chat");
    world.queue.runAll();
    const auto die = [&] {
        view.shownAddress = view.shownTitle = "";
        view.delegate->webProcessEnded();
        world.queue.runAll();
    };

    die();
    EXPECT_EQ(*world.state.currentURL, std::nullopt);
    EXPECT_EQ(*world.state.title, "");
    EXPECT_EQ(view.calls, (Names{"reload"}));
    world.clock.advance(29s);
    die();
    EXPECT_EQ(view.calls, (Names{"reload"}));
    world.clock.advance(1s);
    die();
    EXPECT_EQ(view.calls, (Names{"reload", "reload"}));
}

} // namespace
} // namespace corvane::testing
