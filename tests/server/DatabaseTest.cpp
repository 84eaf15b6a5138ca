#include "commands/Folders.h"
#include "data/DatabaseError.h"
#include "data/Statement.h"
#include "data/Transaction.h"
#include "server/TemporaryFolder.h"
#include "store/DeviceStore.h"
#include "store/EventStore.h"

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

constexpr std::chrono::sys_seconds someTime{std::chrono::seconds(1'700'000'000)};

TEST(DatabaseTest, KeepsWhatWasWrittenAndOpensOnlyWhatItUnderstands)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(openDatabase(folder.path(), Database::Opening::existingOnly)) << "there is none yet";
    {
        auto database = openDatabase(folder.path() / "new/one", Database::Opening::createWhenMissing).value();
        DeviceStore(database).put({"id", "macos", "corvane", ""}, someTime);
    }
    auto database = openDatabase(folder.path() / "new/one", Database::Opening::existingOnly).value();
    EXPECT_TRUE(DeviceStore(database).isRegistered("id"));

    database.run("PRAGMA user_version = 3");
    const auto newer = openDatabase(folder.path() / "new/one", Database::Opening::existingOnly);
    ASSERT_FALSE(newer);
    EXPECT_NE(newer.error().message.find("newer version"), std::string::npos);

    folder.write("broken/server.db", std::string(5000, 'x'));
    EXPECT_FALSE(openDatabase(folder.path() / "broken", Database::Opening::createWhenMissing));
    folder.write("file", "");
    EXPECT_FALSE(openDatabase(folder.path() / "file", Database::Opening::createWhenMissing));
}

TEST(DatabaseTest, BringsAnOlderFileUpToDateAndKeepsWhatItHolds)
{
    const TemporaryFolder folder;
    {
        auto old = openDatabase(folder.path(), Database::Opening::createWhenMissing).value();
        old.run("DROP TABLE events; DROP TABLE event_totals; PRAGMA user_version = 1");
        DeviceStore(old).put({"id", "macos", "corvane", ""}, someTime);
    }
    for (int opening = 1; opening <= 2; ++opening) {
        auto database = openDatabase(folder.path(), Database::Opening::existingOnly).value();
        EXPECT_TRUE(DeviceStore(database).isRegistered("id"));
        EventStore events(database);
        events.add(std::vector{UsageEvent{.name = "app_start"}});
        EXPECT_EQ(events.all().size(), static_cast<std::size_t>(opening));
    }
}

TEST(DatabaseTest, AnUnfinishedTransactionLeavesNothing)
{
    auto database = Database::inMemory();
    DeviceStore devices(database);
    try {
        Transaction transaction(database);
        devices.put({"one", "macos", "corvane", ""}, someTime);
        devices.bind("one", 999); // no such profile
        transaction.commit();
        FAIL() << "a foreign key must hold";
    } catch (const DatabaseError&) {
    }
    EXPECT_EQ(devices.count(), 0);
}

TEST(DatabaseTest, TextFromOutsideIsNeverReadAsSql)
{
    auto database = Database::inMemory();
    DeviceStore devices(database);
    const std::string text("'); DROP TABLE devices; --\0x", 28);
    devices.put({text, text, text, text}, someTime);
    EXPECT_TRUE(devices.isRegistered(text));
    EXPECT_FALSE(devices.isRegistered("' OR 1 = 1 --"));
}

} // namespace
} // namespace corvane::server::testing
