#include "platform/GlibMainQueue.h"

#include "support/MainContext.h"

#include <memory>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(GlibMainQueueTest, TakesActionsOfEveryThreadInOneOrderAndRunsThemOnItsOwn)
{
    GlibMainQueue queue;
    std::string order;
    const auto here = std::this_thread::get_id();
    const auto a = queue.post([&] { order += "a"; });
    std::thread([&] {
        for (const char c : {'b', 'c'})
            queue.postFromAnyThread([&, c] { order += std::this_thread::get_id() == here ? c : '!'; });
    }).join();
    const auto d = queue.post([&] {
        order += "d";
        queue.postFromAnyThread([&] { order += "f"; });
    });
    queue.postFromAnyThread([&] { order += "e"; });
    EXPECT_EQ(order, "");
    testing::iteratePending();
    EXPECT_EQ(order, "abcdef");
}

TEST(GlibMainQueueTest, DropsWithItselfWhatHasNotRun)
{
    std::optional<GlibMainQueue> queue(std::in_place);
    const auto held = std::make_shared<int>();
    for (int i = 0; i < 2; ++i)
        queue->postFromAnyThread([held] { FAIL(); });
    queue.reset();
    testing::iteratePending();
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace corvane
