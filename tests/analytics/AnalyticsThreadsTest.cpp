#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsURLSchemeHandler.h"
#include "analytics/AnalyticsWebViewRepresentable.h"
#include "analytics/AnalyticsWorld.h"

#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace corvane {
namespace {

using namespace std::chrono_literals;

/// What only the thread sanitizer sees is most of what these tests are for.
class AnalyticsThreadsTest : public AnalyticsWorld {
protected:
    static constexpr int threads = 4;
    static constexpr int rounds = 200;

    /// Runs `work` on several threads while this one plays the main thread, turn by turn.
    template <typename Work, typename Turn>
    void runBeside(const Work& work, const Turn& turn)
    {
        std::atomic<int> running = threads;
        std::vector<std::jthread> workers;
        workers.reserve(threads);
        for (int number = 0; number < threads; ++number) {
            workers.emplace_back([&, number] {
                for (int round = 0; round < rounds; ++round)
                    work(number * rounds + round);
                --running;
            });
        }
        for (int count = 0; running > 0; ++count) {
            turn(count);
            queue.runTurn();
        }
        workers.clear();
        queue.runAll();
    }

    /// The different values that a query item had in the requests.
    std::set<std::string> sent(std::string_view item) const
    {
        std::set<std::string> values;
        for (const auto& request : http.requests()) {
            const auto query = request.url.query();
            const auto start = query.find(item) + item.size();
            values.emplace(query.substr(start, query.find('&', start) - start));
        }
        return values;
    }
};

TEST_F(AnalyticsThreadsTest, EveryEventOfEveryThreadLeavesOnceOverTheWholeLifeOfDelivery)
{
    const auto manager = std::make_shared<AnalyticsManager>(defaults, host, clock, AppInfo{});
    manager->setEnabled(true);
    std::optional<AnalyticsWebViewRepresentable> representable;
    runBeside(
        [&](int number) {
            manager->track("e", {{"number", std::int64_t{number}}});
            webView->isReady();
            manager->preInitQueue();
        },
        [&](int count) {
            if (count == 3)
                representable.emplace(*manager,
                                      AnalyticsRoutes{webView, [this] { return makeNativeCollect(); }, queue});
            else if (count == 6)
                page.say("ready");
            else if (count == 9)
                page.say("configured");
            else if (count == 15)
                clock.advance(2s);
        });
    if (!representable)
        representable.emplace(*manager, AnalyticsRoutes{webView, [this] { return makeNativeCollect(); }, queue});
    page.say("ready");
    queue.runAll();
    page.say("configured");
    queue.runAll();
    clock.advance(2s);
    queue.runAll();

    // Whatever the page was given came back at the check: so every event has gone directly.
    EXPECT_EQ(sent("&ep.number=").size(), std::size_t{threads * rounds});
    EXPECT_EQ(http.requests().size(), std::size_t{threads * rounds});
}

TEST_F(AnalyticsThreadsTest, SwitchingWhileOthersRecordLeavesNothingBehindWhenOff)
{
    const auto manager = std::make_shared<AnalyticsManager>(defaults, host, clock, AppInfo{});
    const AnalyticsWebViewRepresentable representable(
        *manager, AnalyticsRoutes{webView, [this] { return makeNativeCollect(); }, queue});
    page.say("ready");
    queue.runAll();
    runBeside([&](int) { manager->trackMenuOpen(); },
              [&](int count) {
                  manager->setEnabled(count % 2 == 0);
                  page.say(count % 3 == 0 ? "ga_collect" : "configured");
                  clock.advance(500ms);
              });
    manager->setEnabled(false);
    queue.runAll();
    const auto requests = http.requests().size();
    page.takeScripts();
    manager->trackMenuOpen();
    clock.advance(10s);
    queue.runAll();
    EXPECT_EQ(http.requests().size(), requests);
    EXPECT_TRUE(page.scripts.empty());
}

TEST_F(AnalyticsThreadsTest, ThePageHostTheSchemeAndTheDirectWayServeEveryThread)
{
    const auto collect = makeNativeCollect();
    AnalyticsURLSchemeHandler handler;
    handler.setHtmlContent("old");
    webView->setUp();
    page.say("ready");
    runBeside(
        [&](int number) {
            webView->sendMessage({{"n", number}});
            collect->sendEvent("e", {}, "c", "1");
            const auto served = handler.answer(AnalyticsURLSchemeHandler::pageAddress);
            EXPECT_TRUE(served == "old" || served == "new");
        },
        [&](int) {
            handler.setHtmlContent("new");
            webView->flushPendingMessages();
        });
    const std::set<std::string> scripts(page.scripts.begin(), page.scripts.end());
    EXPECT_EQ(scripts.size(), std::size_t{threads * rounds});
    EXPECT_EQ(sent("&_s=").size(), std::size_t{threads * rounds});
}

} // namespace
} // namespace corvane
