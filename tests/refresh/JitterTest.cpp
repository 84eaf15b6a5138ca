#include "refresh/Jitter.h"

#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Seconds = std::chrono::duration<double>;
constexpr std::uint64_t last = std::uint64_t{1} << 53U;

TEST(JitterTest, SpreadsFromEndToEndAndIsNeverBelowASecond)
{
    struct Case {
        double base;
        std::uint64_t draw;
        double expected;
    };
    for (const auto& [base, draw, expected] : std::vector<Case>{
             {1800, 0, 1530},
             {1800, last / 2, 1800},
             {1800, last, 2070},
             {43200, 0, 36720},
             {86400, last, 99360},
             {1, 0, 1},
             {0, last, 1},
             {-5, 0, 1},
         })
        EXPECT_NEAR(jittered(Seconds(base), [draw] { return draw; }).count(), expected, 1e-9) << base << " " << draw;
}

TEST(JitterTest, DrawsAgainRatherThanFoldingLargeNumbersBack)
{
    // Only the lowest 54 bits count; of these everything above 2^53 is thrown away.
    std::vector<std::uint64_t> draws{last + 1, 2 * last - 1, ~std::uint64_t{0}, (std::uint64_t{1} << 63U) + last / 2,
                                     0};
    std::size_t next = 0;
    EXPECT_NEAR(jittered(Seconds(100), [&] { return draws[next++]; }).count(), 100, 1e-9);
    EXPECT_EQ(next, 4U);
}

TEST(JitterTest, SystemDrawsStayInRangeAndFillBothHalves)
{
    int below = 0;
    for (int i = 0; i < 1000; ++i) {
        const auto seconds = jittered(Seconds(1000), systemRandomBits).count();
        EXPECT_TRUE(seconds >= 850 && seconds <= 1150) << seconds;
        below += seconds < 1000 ? 1 : 0;
    }
    EXPECT_TRUE(below > 300 && below < 700) << below; // a fair source misses this once in 10^36 runs
}

} // namespace
} // namespace corvane
