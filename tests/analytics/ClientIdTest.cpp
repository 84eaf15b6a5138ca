#include "analytics/ClientId.h"

#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ClientId, DerivesTheSameIdentifierFromMachineAndUserEveryTime)
{
    struct Case {
        std::string host, login, base;
    };
    // Hashes computed by hand; the clock's time modulo 10^9 stands in for what short ones lack.
    for (const auto& [host, login, base] : std::vector<Case>{
             {"zürich", "ana", "1390883039.7019051763"},       // 20 digits
             {"workstation", "grace", "939271354.7342263531"}, // 19 digits
             {"abc", "d", "210706.216942"},                    // 12 digits
             {"ab", "c", "6385036746.700000042"},              // 10 digits
             {"", "", "177668.700000042"},
         }) {
        testing::FixedHostInfo names;
        names.host = host;
        names.login = login;
        testing::MemoryDefaultsStore defaults;
        testing::ManualClock clock(Clock::TimePoint(std::chrono::milliseconds(1'700'000'042'900)));
        EXPECT_EQ(makeClientId(defaults, names, clock), base + "_rel");
        EXPECT_EQ(defaults.string("AnalyticsClientId"), base);
        clock.advance(std::chrono::hours(1));
        EXPECT_EQ(makeClientId(defaults, names, clock), base + "_rel");
    }
}

TEST(ClientId, UsesAStoredTextWithItsEndingSetRightAndNeverRewritesIt)
{
    for (const auto& [stored, used] : {std::pair("1.2", "1.2_rel"),
                                       {"1.2_rel", "1.2_rel"},
                                       {"1.2_dbg", "1.2_rel"},
                                       {"", "_rel"},
                                       {"_dbg", "_rel"},
                                       {"x_rel_dbg", "x_rel_rel"},
                                       {"dbg", "dbg_rel"}}) {
        testing::MemoryDefaultsStore defaults;
        defaults.setString("AnalyticsClientId", stored);
        EXPECT_EQ(makeClientId(defaults, testing::FixedHostInfo(), testing::ManualClock()), used);
        EXPECT_EQ(defaults.string("AnalyticsClientId"), stored);
    }
}

} // namespace
} // namespace corvane
