#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsWebViewRepresentable.h"
#include "analytics/AnalyticsWorld.h"

#include <optional>
#include <regex>

namespace corvane {
namespace {

using Lines = std::vector<std::string>;
using namespace std::chrono_literals;

class AnalyticsDeliveryTest : public AnalyticsWorld {
protected:
    AnalyticsDeliveryTest()
    {
        defaults.setString("AnalyticsClientId", "1.2");
        manager = std::make_shared<AnalyticsManager>(defaults, host, clock, AppInfo{.shortVersion = "3.4"});
        manager->setEnabled(true);
    }

    void start()
    {
        representable.emplace(*manager, AnalyticsRoutes{.page = webView,
                                                        .makeNativeCollect = [this] { return makeNativeCollect(); },
                                                        .queue = queue});
    }

    /// Leads to the page, unverified, with nothing on its way.
    void startPage()
    {
        start();
        say("ready");
        say("configured");
        told();
    }

    void record(const std::string& name)
    {
        manager->track(name, {{"event_label", "x"}});
        queue.runAll();
    }

    void pass(std::chrono::milliseconds time)
    {
        clock.advance(time);
        queue.runAll();
    }

    /// The names of the events that the page was given since the last call, "configure" for its configuration.
    Lines told()
    {
        Lines names;
        for (const auto& script : page.takeScripts()) {
            const auto json = parseJson(script.substr(21, script.size() - 23)).value();
            const auto* name = textOf(member(json, "name"));
            names.push_back(name == nullptr ? *textOf(member(json, "type")) : *name);
        }
        return names;
    }

    /// The names of the events that were sent without the page since the last call.
    Lines sent()
    {
        Lines names;
        for (; seenRequests < http.requests().size(); ++seenRequests) {
            std::smatch name;
            const auto& address = http.requests()[seenRequests].url.text();
            names.push_back(std::regex_search(address, name, std::regex("&en=([^&]*)")) ? name[1].str() : "");
        }
        return names;
    }

    std::shared_ptr<AnalyticsManager> manager;
    std::optional<AnalyticsWebViewRepresentable> representable;
    std::size_t seenRequests = 0;
};

TEST_F(AnalyticsDeliveryTest, WaitingEventsReachThePageInOrderOnceItIsConfigured)
{
    record("early");
    start();
    EXPECT_EQ(page.made, 1);
    record("before ready");
    say("ready");
    EXPECT_EQ(
        page.takeScripts(),
        Lines{R"(receiveNativeMessage({"config":{"client_id":"1.2_rel","debug_mode":false,"send_page_views":false},)"
              R"("properties":{"app_version":"3.4"},"type":"configure"});)"});
    record("after ready"); // overtakes what waits
    EXPECT_EQ(page.takeScripts(),
              Lines{R"(receiveNativeMessage({"name":"after ready","params":{"event_label":"x"},"type":"event"});)"});
    say("configured");
    EXPECT_EQ(told(), (Lines{"early", "before ready"}));
    say("configured");
    EXPECT_EQ(told(), Lines());
    EXPECT_EQ(sent(), Lines());
}

TEST_F(AnalyticsDeliveryTest, OnlyWhatWasRecordedWhileOnEverLeaves)
{
    record("dropped");
    manager->setEnabled(false);
    manager->trackMenuOpen();
    manager->setEnabled(true);
    record("kept");
    startPage();
    record("unconfirmed");
    manager->setEnabled(false);
    manager->trackMenuOpen();
    record("while off");
    pass(5s);
    EXPECT_EQ(told(), (Lines{"unconfirmed"}));
    EXPECT_EQ(sent(), Lines());
}

TEST_F(AnalyticsDeliveryTest, APageThatIsReadyWhileOffIsConfiguredWhenAnalyticsComesOn)
{
    record("dropped");
    manager->adoptEnabled(false);
    start();
    say("ready");
    say("configured");
    EXPECT_EQ(told(), Lines());
    EXPECT_TRUE(manager->preInitQueue().empty());
    manager->setEnabled(true);
    manager->setEnabled(true);
    queue.runAll();
    EXPECT_EQ(told(), Lines{"configure"});
    record("a");
    EXPECT_EQ(told(), Lines{"a"});
}

TEST_F(AnalyticsDeliveryTest, WithoutProofAfterTwoSecondsEverythingGoesDirectly)
{
    record("waiting");
    startPage();
    pass(1s);
    record("a");
    pass(999ms);
    EXPECT_EQ(sent(), Lines());
    pass(1ms);
    EXPECT_EQ(sent(), (Lines{"waiting", "a"}));
    EXPECT_EQ(told(), Lines{"a"});
    say("ga_collect"); // too late
    record("b");
    pass(5s);
    EXPECT_EQ(sent(), Lines{"b"});
    EXPECT_EQ(told(), Lines());
    EXPECT_TRUE(http.requests()[2].url.query().contains("&cid=1.2_rel&en=b&sid=1700000002&sct=1&seg=1&_s=3&"));
}

TEST_F(AnalyticsDeliveryTest, WithProofThePageStaysInUse)
{
    startPage();
    record("a");
    pass(1999ms);
    say("ga_collect");
    pass(1ms);
    record("b");
    pass(5s);
    EXPECT_EQ(told(), (Lines{"a", "b"}));
    EXPECT_EQ(sent(), Lines());
    EXPECT_EQ(clock.pendingTimers(), 0U);
}

TEST_F(AnalyticsDeliveryTest, OffAndOnLeadsBackToAnUnverifiedPageFromEveryState)
{
    const auto toUnverified = [this] { record("a"); };
    const auto toVerified = [this] {
        record("a");
        say("ga_collect");
    };
    const auto toDirect = [this] {
        record("a");
        pass(2s);
    };
    startPage();
    for (const std::function<void()>& lead : {std::function<void()>(toUnverified), {toVerified}, {toDirect}}) {
        lead();
        pass(2s); // no check runs any more
        manager->setEnabled(false);
        manager->setEnabled(true);
        queue.runAll();
        EXPECT_EQ(told().back(), "configure");
        sent();
        record("b");
        EXPECT_EQ(told(), Lines{"b"});
        EXPECT_EQ(sent(), Lines());
        pass(2s);
        EXPECT_EQ(sent(), Lines{"b"});
        manager->setEnabled(false);
        manager->setEnabled(true);
    }
}

TEST_F(AnalyticsDeliveryTest, OfTwoChecksTheFirstDecides)
{
    startPage();
    record("old");
    pass(1500ms);
    manager->setEnabled(false);
    manager->setEnabled(true);
    record("new");
    EXPECT_EQ(clock.pendingTimers(), 2U);
    pass(500ms);
    EXPECT_EQ(sent(), Lines{"new"});
    pass(1500ms);
    EXPECT_EQ(sent(), Lines());
    EXPECT_EQ(clock.pendingTimers(), 0U);
}

TEST_F(AnalyticsDeliveryTest, TheFirstStartCountsAndFindsAPageThatIsReadyAlready)
{
    webView->setUp();
    page.say("ready"); // nobody has heard it yet
    record("a");
    start();
    queue.runAll();
    EXPECT_EQ(told(), Lines{"configure"});
    start();
    queue.runAll();
    EXPECT_EQ(told(), Lines());
    EXPECT_EQ(page.made, 1);
}

TEST_F(AnalyticsDeliveryTest, NothingComesOfSignalsAndChecksAfterItsEnd)
{
    startPage();
    record("a");
    page.say("configured");
    manager.reset();
    EXPECT_EQ(clock.pendingTimers(), 0U);
    say("ga_collect");
    pass(5s);
    EXPECT_EQ(sent(), Lines());
}

TEST_F(AnalyticsDeliveryTest, TheEndWaitsAMomentForWhatCanStillLeave)
{
    int ends = 0;
    const auto bidFarewell = [&] {
        manager->trackAppEnd();
        manager->bidFarewell([&] { ++ends; });
        queue.runAll();
    };
    bidFarewell(); // nothing leaves before there is a page
    EXPECT_EQ(ends, 1);
    startPage();
    manager->setEnabled(false);
    bidFarewell();
    EXPECT_EQ(ends, 2);

    manager->setEnabled(true);
    bidFarewell(); // the page may need the whole moment
    EXPECT_EQ(told(), (Lines{"configure", "app_end"}));
    pass(299ms);
    EXPECT_EQ(ends, 2);
    pass(1ms);
    EXPECT_EQ(ends, 3);

    pass(2s);
    EXPECT_EQ(sent(), Lines{"app_end"});
    bidFarewell(); // an answer ends it early, when it is the last one
    EXPECT_EQ(sent(), Lines{"app_end"});
    EXPECT_TRUE(http.answer(0, HttpResponse{204, ""}));
    EXPECT_EQ(ends, 3);
    EXPECT_TRUE(http.answer(1, std::unexpected(Error{"down"})));
    EXPECT_EQ(ends, 4);
    bidFarewell();
    pass(300ms);
    EXPECT_TRUE(http.answer(2, HttpResponse{204, ""}));
    EXPECT_EQ(ends, 5);

    manager->setEnabled(false); // what was on its way may still leave
    manager->bidFarewell([&] { ++ends; });
    queue.runAll();
    EXPECT_EQ(ends, 6);
    EXPECT_EQ(clock.pendingTimers(), 0U);
}

} // namespace
} // namespace corvane
