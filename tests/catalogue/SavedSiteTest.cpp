#include "catalogue/SavedSite.h"

#include "support/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

const std::vector<Site> sites{{"A", "1", ""}, {"B", "2", ""}, {"A", "3", ""}};

TEST(SavedSite, FindsTheFirstEntryOfAnExactName)
{
    EXPECT_EQ(findSite(sites, "A"), &sites[0]);
    EXPECT_EQ(findSite(sites, "B"), &sites[1]);
    EXPECT_EQ(findSite(sites, "a"), nullptr);
}

TEST(SavedSite, RemembersAServiceOnlyWhileTheCatalogueHoldsIt)
{
    testing::MemoryDefaultsStore defaults;
    EXPECT_EQ(savedSiteID(defaults, sites), std::nullopt);
    defaults.setBoolean(siteIndexKey, true);
    EXPECT_EQ(savedSiteID(defaults, sites), std::nullopt);
    defaults.setString(siteIndexKey, "B");
    EXPECT_EQ(savedSiteID(defaults, sites), "B");
    EXPECT_EQ(savedSiteID(defaults, {sites[0]}), std::nullopt);
}

} // namespace
} // namespace corvane
