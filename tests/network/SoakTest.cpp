#include "network/SoakWorld.h"
#include "support/ProcessMeasures.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;

/// The long form of this is bench/soak.
TEST(SoakTest, DaysOfFailuresLeaveNothingBehindAndEveryCheckComesBackInTime)
{
    const unsigned seed = 2026;
    SCOPED_TRACE(fmt::format("seed {}", seed));
    testing::SoakWorld world(seed);
    ASSERT_TRUE(world.live(48h)); // whatever is made once is there now
    const auto heap = testing::heapBytes();
    const auto descriptors = testing::openDescriptors();
    const auto threads = testing::runningThreads();
    ASSERT_TRUE(world.live(120h));
    EXPECT_EQ(world.surprises(), std::vector<std::string>());
    const auto [notifications, lists, versions] = world.checks();
    EXPECT_GT(notifications, 7 * 24 * 2U) << "some were tried again";
    EXPECT_GT(lists, 14U);
    EXPECT_GT(versions, 7U);
    EXPECT_GT(world.failedRequests() * 6, world.requests());
    EXPECT_NEAR(static_cast<double>(testing::heapBytes()), static_cast<double>(heap), 256 << 10);
    EXPECT_NEAR(static_cast<double>(testing::openDescriptors()), static_cast<double>(descriptors), 4);
    EXPECT_LE(testing::runningThreads(), threads + 2) << "GLib's own come and go";
}

} // namespace
} // namespace corvane
