#include "async/MainLoop.h"

#include "async/TaskScope.h"
#include "support/MainContext.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::iteratePending;
using testing::iterateUntil;
using namespace std::chrono_literals;

TEST(MainLoopTest, CallsLaterInTheOrderOfPosting)
{
    std::string order;
    const auto a = callLater([&] { order += "a"; });
    const auto b = callAfter(0ms, [&] { order += "b"; });
    const auto c = callLater([&] { order += "c"; });
    EXPECT_EQ(order, "");
    iteratePending();
    EXPECT_TRUE(order == "abc" || order == "acb") << order;
}

TEST(MainLoopTest, EndingTakesACallBackAtAnyTime)
{
    std::string order;
    Subscription self, next;
    auto before = callLater([&] { order += "never"; });
    before.end();
    self = callLater([&, kept = std::make_unique<std::string>("self ")] {
        self.end(); // while it runs
        next.end(); // due in the same turn
        order += *kept;
    });
    next = callLater([&] { order += "never"; });
    {
        const auto dropped = callAfter(0ms, [&] { order += "never"; });
    }
    iteratePending();
    EXPECT_EQ(order, "self ");
    self.end(); // after the call
}

TEST(MainLoopTest, ACallPostedByACallComesInALaterTurn)
{
    std::vector<Subscription> posted;
    int calls = 0;
    posted.push_back(callLater([&] {
        ++calls;
        posted.push_back(callLater([&] { ++calls; }));
    }));
    g_main_context_iteration(nullptr, FALSE);
    EXPECT_EQ(calls, 1);
    iteratePending();
    EXPECT_EQ(calls, 2);
}

TEST(MainLoopTest, ASubscriptionMayOutliveItsContext)
{
    const auto fatal = g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
    auto* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    auto kept = callAfter(1h, [] { FAIL(); });
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
    kept.end();
    EXPECT_FALSE(kept.isActive());
    g_log_set_always_fatal(fatal);
}

Task<void> sleepThenCount(std::chrono::milliseconds delay, int* count)
{
    co_await Delay(delay);
    ++*count;
}

TEST(MainLoopTest, DelaysEndAfterTheirTimeUnlessTheirTaskIsCancelled)
{
    int shortOnes = 0, longOnes = 0;
    TaskScope kept, cancelled;
    const auto start = std::chrono::steady_clock::now();
    kept.start(sleepThenCount(20ms, &shortOnes));
    kept.start(sleepThenCount(-5ms, &shortOnes));
    kept.start(sleepThenCount(1h, &longOnes));
    kept.start(sleepThenCount(4'294'967'301ms, &longOnes)); // more milliseconds than GLib counts
    cancelled.start(sleepThenCount(1ms, &longOnes));
    cancelled.cancel();
    ASSERT_TRUE(iterateUntil([&] { return shortOnes == 2; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
    EXPECT_EQ(longOnes, 0);
}

Task<void> tellTurns(std::string* order)
{
    *order += "started ";
    co_await IdleTurn();
    *order += "first ";
    co_await IdleTurn();
    *order += "second ";
}

TEST(MainLoopTest, IdleTurnsComeOneByOneAfterDrawingUnlessTheirTaskIsCancelled)
{
    static constexpr int drawing = G_PRIORITY_HIGH_IDLE + 20; // as GTK has it
    std::string order;
    TaskScope kept, cancelled;
    kept.start(tellTurns(&order));
    EXPECT_EQ(order, "started ");
    const auto draw = [](gpointer text) -> gboolean {
        *static_cast<std::string*>(text) += "drawn ";
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(drawing, draw, &order, nullptr);
    g_main_context_iteration(nullptr, FALSE);
    EXPECT_EQ(order, "started drawn ");
    g_main_context_iteration(nullptr, FALSE);
    EXPECT_EQ(order, "started drawn first ");
    iteratePending();
    EXPECT_EQ(order, "started drawn first second ");

    cancelled.start(tellTurns(&order));
    g_main_context_iteration(nullptr, FALSE);
    cancelled.cancel();
    iteratePending();
    EXPECT_EQ(order, "started drawn first second started first ");
}

} // namespace
} // namespace corvane
