#include "base/Published.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Log = std::vector<std::string>;

TEST(PublishedTest, TellsChangesInOrderAndIsSilentWhenEqual)
{
    Published<int> number(1);
    Log log;
    const auto first = number.bind([&](int value) { log.push_back("bound " + std::to_string(value)); });
    const auto second = number.observe([&](int value) { log.push_back("observed " + std::to_string(value)); });
    number.set(1);
    number.set(2);
    EXPECT_EQ(log, (Log{"bound 1", "bound 2", "observed 2"}));
}

TEST(PublishedTest, ShowsTheNewestValueWhenAnObserverSetsItAgain)
{
    Published<int> number(0);
    Log log;
    const auto correcting = number.observe([&](int value) {
        log.push_back("first " + std::to_string(value));
        if (value == 1)
            number.set(2);
    });
    const auto watching = number.observe([&](int value) { log.push_back("second " + std::to_string(value)); });
    number.set(1);
    EXPECT_EQ(log, (Log{"first 1", "first 2", "second 2", "second 2"}));
}

TEST(PublishedTest, ObserversMayEndAndBeginObservingWhileTheyAreTold)
{
    Published<std::string> text;
    Log log;
    Subscription itself, other, added;
    itself = text.observe([&, padding = std::string(100, 'p')](const std::string& value) {
        itself.end();
        other.end();
        added = text.observe([&](const std::string& later) { log.push_back("added " + later); });
        log.push_back("itself " + value + padding.substr(0, 1)); // what it holds is still there
    });
    other = text.observe([&](const std::string& value) { log.push_back("other " + value); });
    text.set("a");
    text.set("b");
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front(), "itself ap");
    EXPECT_EQ(log.back(), "added b");
    for (const auto& line : log)
        EXPECT_FALSE(line.starts_with("other"));
}

TEST(PublishedTest, SubscriptionsOutliveTheValueAndMoveWithoutEnding)
{
    int told = 0;
    Subscription kept;
    {
        Published<int> number(0);
        auto first = number.observe([&](int) { ++told; });
        kept = std::move(first);
        number.set(1);
        kept = number.observe([&](int) { told += 10; }); // replaces and so ends the first
        number.set(2);
    }
    EXPECT_EQ(told, 11);
    kept.end();
    EXPECT_FALSE(kept.isActive());
}

} // namespace
} // namespace corvane
