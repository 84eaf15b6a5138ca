#include "state/AppState.h"

#include "analytics/AnalyticsManager.h"
#include "state/UpdateScheduler.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

class AppStateTest : public ::testing::Test {
protected:
    AppStateTest() { analytics.adoptEnabled(true); }

    MemoryDefaultsStore defaults;
    FixedHostInfo host;
    ManualClock clock;
    AppInfo info{.shortVersion = "1.2"};
    AnalyticsManager analytics{defaults, host, clock, info};
};

TEST_F(AppStateTest, StartsInFirstUseUnlessAStoredBooleanSaysOtherwise)
{
    EXPECT_TRUE(*AppState(defaults, analytics).isFirstUse());
    defaults.setString("FirstUse", "false");
    EXPECT_TRUE(*AppState(defaults, analytics).isFirstUse());
    defaults.setBoolean("FirstUse", false);
    EXPECT_FALSE(*AppState(defaults, analytics).isFirstUse());
}

TEST_F(AppStateTest, EndsFirstUseOnceAndAsksForConsentUntilItWasAnswered)
{
    AppState state(defaults, analytics);
    state.setFirstUse(false);
    state.setFirstUse(false);
    EXPECT_EQ(analytics.preInitQueue().size(), 1U);
    EXPECT_TRUE(*state.showAnalyticsConsent);
    EXPECT_EQ(defaults.boolean("FirstUse"), false);

    state.showAnalyticsConsent.set(false);
    defaults.setBoolean("AnalyticsConsentShown", true);
    state.setFirstUse(true);
    state.setFirstUse(false);
    EXPECT_FALSE(*state.showAnalyticsConsent);
}

TEST_F(AppStateTest, ForgetsTheServiceWhenFirstUseBeginsAgain)
{
    defaults.setBoolean("FirstUse", false);
    defaults.setString("siteIndex", "Echo");
    AppState state(defaults, analytics);
    state.selectedSiteURL.set(Url::parse("https://chat.example/"));
    state.setFirstUse(true);
    EXPECT_EQ(*state.selectedSiteURL, std::nullopt);
    EXPECT_EQ(defaults.string("siteIndex"), std::nullopt);
    EXPECT_EQ(defaults.boolean("FirstUse"), true);
}

TEST(UpdateSchedulerTest, FoldsTheRequestsOfATurnAndTakesThoseMadeDuringTheUpdate)
{
    ManualMainQueue queue;
    int updates = 0;
    UpdateScheduler* self = nullptr;
    UpdateScheduler scheduler(queue, [&] {
        if (++updates == 1)
            self->request();
    });
    self = &scheduler;
    scheduler.request();
    scheduler.request();
    queue.runTurn();
    EXPECT_EQ(updates, 1);
    queue.runAll();
    EXPECT_EQ(updates, 2);
}

} // namespace
} // namespace corvane::testing
