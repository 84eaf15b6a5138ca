#include "screens/NotificationsModel.h"

#include "screens/DialogWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using Ids = std::vector<std::int64_t>;

class NotificationsModelTest : public ::testing::Test, protected DialogWorld {
protected:
    NotificationsModelTest() { fill({9, 4}); }

    /// The server now has these waiting, and the program has heard of it.
    void fill(const Ids& ids)
    {
        Json list = Json::array();
        for (const auto id : ids)
            list.push_back({{"recipientId", id}, {"title", "T" + std::to_string(id)}, {"body", "<p>B</p>"}});
        http.respond = [listing = compactJson({{"notifications", list}})](const HttpRequest& request) {
            return HttpResponse{200, request.url.path().ends_with("pending") ? listing : "{}"};
        };
        TaskScope scope;
        scope.start(refresh());
        http.respond = nullptr;
    }

    Task<void> refresh() { co_await manager.refresh(); }

    void open()
    {
        state.showNotifications.set(true);
        model.appear();
    }

    /// Answers the newest request.
    void answer(int status) { EXPECT_TRUE(http.answer(http.requests().size() - 1, HttpResponse{status, ""})); }

    Json acknowledged() const { return parseJson(http.requests().back().body)->at("recipientIds"); }
    std::int64_t openId() const { return *model.effectiveSelection() ? (*model.effectiveSelection())->recipientId : 0; }
    bool isOpen() const { return *state.showNotifications; }
    PendingNotification notification(std::size_t index) const { return manager.pending()->at(index); }

    NotificationsModel model{notificationsServices()};
};

TEST_F(NotificationsModelTest, OpensTheOnlyOneByItselfAndOthersWhenSelected)
{
    open();
    EXPECT_EQ(openId(), 0);
    EXPECT_EQ(model.headline(), "Notifications");
    EXPECT_EQ(model.page(), "");

    model.select(notification(1));
    EXPECT_EQ(openId(), 4);
    EXPECT_EQ(model.headline(), "T4");
    EXPECT_TRUE(model.hasBack());
    EXPECT_TRUE(model.page().contains("<style id=\"theme-vars\">"));
    EXPECT_TRUE(model.page().ends_with("<body><p>B</p></body></html>"));
    model.back();
    EXPECT_EQ(openId(), 0);

    fill({9});
    EXPECT_EQ(openId(), 9);
    EXPECT_FALSE(model.hasBack());
    model.back();
    EXPECT_EQ(openId(), 9);
}

TEST_F(NotificationsModelTest, FollowsTheListAsItChanges)
{
    struct Case {
        Ids before;
        std::int64_t selected; // 0 for none
        Ids after;
        std::int64_t open;
    };
    for (const auto& [before, selected, after, expected] : std::vector<Case>{
             {{9, 4}, 4, {9, 4, 2}, 4},
             {{9, 4}, 4, {9, 2}, 0},
             {{9, 4}, 4, {9}, 9},
             {{9, 4}, 4, {4}, 4},
             {{9, 4}, 0, {9}, 9},
             {{9}, 0, {9, 4}, 0},
             {{9}, 9, {9, 4}, 9},
             {{9}, 0, {4}, 4},
         }) {
        fill(before);
        open();
        for (const auto& one : std::vector(*manager.pending())) {
            if (one.recipientId == selected)
                model.select(one);
        }
        fill(after);
        EXPECT_EQ(openId(), expected) << selected << " of " << before.size() << ", then " << after.size();
        EXPECT_TRUE(isOpen());
    }
    fill({});
    EXPECT_FALSE(isOpen());
}

TEST_F(NotificationsModelTest, LeavesTheListUnreadWhenItIsClosed)
{
    open();
    const auto requests = http.requests().size();
    model.close();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(http.requests().size(), requests);
}

TEST_F(NotificationsModelTest, MarksWhatIsOpenAsReadAndReturnsToTheRest)
{
    fill({9, 4, 2});
    open();
    model.select(notification(1));
    model.close();
    EXPECT_EQ(acknowledged(), Json({4}));
    EXPECT_EQ(openId(), 4) << "until the server has answered";
    answer(200);
    EXPECT_EQ(openId(), 0);

    model.select(notification(0));
    model.close();
    answer(200);
    EXPECT_EQ(openId(), 2) << "the only one that is left";
    EXPECT_TRUE(isOpen());

    model.close();
    EXPECT_EQ(acknowledged(), Json({2}));
    answer(200);
    EXPECT_FALSE(isOpen());
}

TEST_F(NotificationsModelTest, KeepsWhatCouldNotBeMarkedAsRead)
{
    open();
    model.select(notification(1));
    model.close();
    answer(500);
    EXPECT_EQ(openId(), 0);
    EXPECT_EQ(manager.pending()->size(), 2U);

    fill({4});
    model.close();
    answer(500);
    EXPECT_EQ(openId(), 4);
    EXPECT_TRUE(isOpen());
    model.close(); // again
    answer(200);
    EXPECT_FALSE(isOpen());
}

TEST_F(NotificationsModelTest, DismissesAllInOneRequest)
{
    open();
    model.dismissAll();
    EXPECT_EQ(acknowledged(), Json({4, 9}));
    answer(500);
    EXPECT_TRUE(isOpen());
    model.dismissAll();
    answer(200);
    EXPECT_FALSE(isOpen());
}

TEST_F(NotificationsModelTest, AnAcknowledgementThatEndsLateLeavesALaterShowingAlone)
{
    for (const bool byLink : {false, true}) {
        for (const int status : {200, 500}) {
            fill({9, 4, 2});
            open();
            model.select(notification(1));
            byLink ? static_cast<void>(model.followsLink({.address = "https://h/"})) : model.close();
            const auto request = http.requests().size() - 1;
            state.showNotifications.set(false);
            model.disappear();
            EXPECT_EQ(http.waiting(), 1U) << "goes on without the dialog";

            open();
            model.select(notification(2));
            EXPECT_TRUE(http.answer(request, HttpResponse{status, ""}));
            EXPECT_EQ(openId(), 2);
            EXPECT_TRUE(isOpen());
            EXPECT_EQ(manager.pending()->size(), status == 200 ? 2U : 3U);
            model.disappear();
        }
    }
}

TEST_F(NotificationsModelTest, AnAcknowledgementLeavesAnotherOneThatWasOpenedMeanwhile)
{
    fill({9, 4, 2});
    open();
    model.select(notification(1));
    model.close();
    model.back();
    model.select(notification(0));
    answer(200);
    EXPECT_EQ(openId(), 9);
}

TEST_F(NotificationsModelTest, AListThatEmptiesUnseenClosesNothing)
{
    open();
    model.disappear();
    fill({});
    EXPECT_TRUE(isOpen()) << "whoever asked for it meanwhile keeps it";
    fill({9, 4});
    open();
    EXPECT_EQ(openId(), 0);
}

TEST_F(NotificationsModelTest, ShowsCopiedUntilAWhileAfterTheLastCopy)
{
    using std::chrono::milliseconds;
    open();
    model.copySelected(); // nothing is open
    EXPECT_TRUE(desktop.calls.empty());
    model.copyPreview(notification(0));
    clock.advance(milliseconds(1199));
    EXPECT_TRUE(*model.showCopied());
    model.select(notification(1));
    model.copySelected();
    clock.advance(milliseconds(1199));
    EXPECT_TRUE(*model.showCopied());
    clock.advance(milliseconds(1));
    EXPECT_FALSE(*model.showCopied());
    EXPECT_EQ(desktop.calls, (std::vector<std::string>{"copy T9\n\nB", "copy T4\n\nB"}));

    model.copyPreview({.title = " \u00A0", .body = "\n"});
    EXPECT_FALSE(*model.showCopied());
    model.copyPreview({.title = " t "});
    EXPECT_EQ(desktop.calls.back(), "copy t");
    EXPECT_EQ(desktop.calls.size(), 3U);

    model.disappear();
    EXPECT_EQ(clock.pendingTimers(), 0U);
    open();
    EXPECT_FALSE(*model.showCopied());
}

TEST_F(NotificationsModelTest, LeadsLinksWhereTheyBelongAndFollowsNone)
{
    struct Case {
        std::string address;
        std::string inView, inNewWindow; // what the desktop opens; "app" for the main browser
    };
    for (const auto& [address, inView, inNewWindow] : std::vector<Case>{
             {"https://h/a", "app", "https://h/a"},
             {"http://h/", "app", "http://h/"},
             {"mailto:a@b.c", "mailto:a@b.c", "mailto:a@b.c"},
             {"itms-apps://x", "itms-apps://x", "itms-apps://x"},
             {"itms-appss://x", "itms-appss://x", "itms-appss://x"},
             {"file:///etc/passwd", "", ""},
             {"javascript:alert(1)", "", ""},
             {"data:text/html,x", "", ""},
             {"about:blank#part", "", ""},
             {"page.html", "", ""},
             {"https://h:99999/", "", ""},
             {"", "", ""},
         }) {
        for (const bool asksForNewWindow : {false, true}) {
            open();
            model.select(notification(1));
            state.pendingURLAfterNotifications.reset();
            desktop.calls.clear();
            const auto waiting = http.waiting();
            EXPECT_FALSE(model.followsLink({.address = address, .asksForNewWindow = asksForNewWindow}));

            const auto& expected = asksForNewWindow ? inNewWindow : inView;
            const bool isInApp = expected == "app";
            EXPECT_EQ(state.pendingURLAfterNotifications, isInApp ? Url::parse(address) : std::nullopt) << address;
            EXPECT_EQ(http.waiting() - waiting, isInApp ? 1U : 0U) << address;
            EXPECT_EQ(desktop.calls, isInApp || expected.empty() ? std::vector<std::string>()
                                                                 : std::vector<std::string>{"open " + expected});
            EXPECT_TRUE(isOpen());
        }
    }
}

TEST_F(NotificationsModelTest, ClosesAfterALinkWhetherItCouldBeMarkedAsReadOrNot)
{
    for (const int status : {500, 200}) {
        open();
        model.select(notification(1));
        model.followsLink({.address = "https://h/"});
        EXPECT_EQ(acknowledged(), Json({4}));
        EXPECT_TRUE(isOpen());
        answer(status);
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(state.pendingURLAfterNotifications, Url::parse("https://h/"));
        model.disappear();
    }
}

} // namespace
} // namespace corvane::testing
