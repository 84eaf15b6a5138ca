#include "catalogue/SiteListManager.h"

#include "catalogue/JsonSlices.h"
#include "support/LongCatalogue.h"
#include "support/MainContext.h"
#include "support/ManualClock.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string document(std::string_view service)
{
    return "[ {\"service\":\"" + std::string(service) + R"(","url":"u","description":"d"} ])";
}

class SiteListManagerTest : public ::testing::Test {
protected:
    SiteListManagerTest() { resources.files["sites.json"] = document("shipped"); }

    static std::string firstOf(const SiteListManager& manager)
    {
        return manager.sites()->empty() ? "" : manager.sites()->front().service;
    }

    testing::ScriptedHttpClient http;
    testing::ManualClock clock;
    const SiteListFetcher fetcher{http, clock, testing::endpointsAt()};
    testing::MemoryFileStore files;
    testing::MemoryResources resources;
    const Places places{.data = "/data"};
    const std::filesystem::path local = "/data/sites/sites.json";
    const std::filesystem::path backup = "/data/sites/sites.json.bak";
};

TEST_F(SiteListManagerTest, FallsBackFromTheLocalCopyToTheShippedListToNothing)
{
    struct Case {
        std::optional<std::string> localCopy, shipped;
        std::string first;
    };
    for (const auto& [localCopy, shipped, first] : std::vector<Case>{
             {document("local"), document("shipped"), "local"},
             {"[]", document("shipped"), ""},
             {"[{}]", document("shipped"), "shipped"},
             {std::nullopt, document("shipped"), "shipped"},
             {"torn", "[{", ""},
             {std::nullopt, std::nullopt, ""},
         }) {
        files.files.clear();
        resources.files.clear();
        if (localCopy)
            files.files[local] = *localCopy;
        if (shipped)
            resources.files["sites.json"] = *shipped;
        EXPECT_EQ(firstOf(SiteListManager(files, resources, places, fetcher)), first) << localCopy.value_or("absent");
    }
    EXPECT_EQ(files.writes, 0);
    EXPECT_TRUE(http.requests().empty());
    EXPECT_TRUE(files.folders.empty());
}

TEST_F(SiteListManagerTest, AppliedUpdatesAreStoredByteForByteWithOneBackupGeneration)
{
    SiteListManager manager(files, resources, places, fetcher);
    manager.hasPendingSiteUpdate().set(true);
    manager.applyPendingSiteData(document("first"));
    EXPECT_TRUE(files.folders.contains(local.parent_path()));
    EXPECT_EQ(files.files, (std::map<std::filesystem::path, std::string>{{local, document("first")}}));
    EXPECT_EQ(firstOf(manager), "first");
    EXPECT_FALSE(*manager.hasPendingSiteUpdate());

    manager.applyPendingSiteData(document("second"));
    manager.applyPendingSiteData("no list");
    EXPECT_EQ(files.files[local], "no list");
    EXPECT_EQ(files.files[backup], document("second"));
    EXPECT_EQ(firstOf(manager), "shipped");
}

TEST_F(SiteListManagerTest, KeepsTheOldCatalogueWhenTheNewOneCannotBeWritten)
{
    files.files = {{local, document("old")}, {backup, document("older")}};
    files.unwritable = {local, backup};
    SiteListManager manager(files, resources, places, fetcher);
    manager.hasPendingSiteUpdate().set(true);
    manager.applyPendingSiteData(document("new"));
    EXPECT_EQ(files.files, (std::map<std::filesystem::path, std::string>{{local, document("old")}}));
    EXPECT_EQ(firstOf(manager), "old");
    EXPECT_FALSE(*manager.hasPendingSiteUpdate());
}

TEST_F(SiteListManagerTest, KeepsTheBackupWhenTheCopyThatWouldReplaceItCannotBeRead)
{
    files.files = {{backup, document("older")}};
    files.unremovable = {local}; // takes the name, as a link that leads nowhere
    SiteListManager manager(files, resources, places, fetcher);
    manager.applyPendingSiteData(document("new"));
    EXPECT_EQ(files.files[backup], document("older"));
    EXPECT_EQ(firstOf(manager), "new");
}

TEST_F(SiteListManagerTest, ALongUpdateIsLoadedOverTurnsAndYieldsToWhateverIsNewer)
{
    SiteListManager manager(files, resources, places, fetcher);
    int changes = 0;
    const auto observation = manager.sites().observe([&](const auto&) { ++changes; });
    const auto apply = [&](const std::string& document) {
        manager.hasPendingSiteUpdate().set(true);
        manager.applyPendingSiteData(document);
        EXPECT_EQ(files.files[local], document);
        EXPECT_FALSE(*manager.hasPendingSiteUpdate());
    };
    const auto isLoaded = [&](std::string_view service) { return firstOf(manager) == service; };

    apply(testing::longCatalogue("first"));
    EXPECT_EQ(firstOf(manager), "shipped");
    ASSERT_TRUE(testing::iterateUntil([&] { return isLoaded("first"); }));

    apply(testing::longCatalogue("second"));
    g_main_context_iteration(nullptr, FALSE);
    apply(document("short"));
    EXPECT_EQ(firstOf(manager), "short");
    apply(testing::longCatalogue("third"));
    g_main_context_iteration(nullptr, FALSE);
    files.files[local] = document("by hand");
    manager.loadSites();
    testing::iteratePending();
    EXPECT_EQ(firstOf(manager), "by hand");

    apply(testing::longCatalogue("fourth"));
    apply(testing::longCatalogue("fifth"));
    ASSERT_TRUE(testing::iterateUntil([&] { return isLoaded("fifth"); }));
    apply(testing::longCatalogue("torn") + "]");
    ASSERT_TRUE(testing::iterateUntil([&] { return isLoaded("shipped"); }));
    EXPECT_EQ(changes, 5) << "each list that came into use, once";
}

TEST_F(SiteListManagerTest, MayGoWhileItLoads)
{
    {
        SiteListManager manager(files, resources, places, fetcher);
        manager.applyPendingSiteData(testing::longCatalogue("late"));
        g_main_context_iteration(nullptr, FALSE);
    }
    testing::iteratePending();
    EXPECT_EQ(files.files[local], testing::longCatalogue("late"));
}

} // namespace
} // namespace corvane
