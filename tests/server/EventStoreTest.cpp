#include "store/EventStore.h"

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

TEST(EventStoreTest, KeepsTheNewestWithinItsLimits)
{
    const auto names = [](const EventStore& store) {
        std::string text;
        for (const auto& event : store.all())
            text += event.name;
        return text;
    };
    auto database = Database::inMemory();
    EventStore few(database, {.events = 3, .bytes = 1000});
    for (const auto* name : {"a", "b", "c", "d"})
        few.add(std::vector{UsageEvent{.name = name}});
    EXPECT_EQ(names(few), "bcd");
    few.add(std::vector<UsageEvent>(5, UsageEvent{.name = "e"}));
    EXPECT_EQ(names(few), "eee");
    few.add(std::vector{UsageEvent{.name = "f", .userAgent = std::string(980, 'x')}});
    EXPECT_EQ(names(few), "eef") << "it is as large as all of them may be";
    few.add(std::vector{UsageEvent{.name = "g", .userAgent = std::string(2000, 'x')}});
    EXPECT_EQ(names(few), "") << "it alone is too large";
}

} // namespace
} // namespace corvane::server::testing
