#include "publishing/FileBatch.h"

#include "server/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

namespace fs = std::filesystem;

TEST(FileBatchTest, PutsEverythingInItsPlaceAtTheEnd)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "old");
    {
        auto batch = FileBatch::open(folder.path()).value();
        ASSERT_TRUE(batch.put("a.txt", "new"));
        ASSERT_TRUE(batch.put("deep/er/b.txt", "made"));
        EXPECT_EQ(folder.snapshot().at("a.txt"), "old");
        ASSERT_TRUE(batch.commit());
    }
    EXPECT_EQ(folder.snapshot(), (std::map<std::string, std::string>{
                                     {"a.txt", "new"}, {"deep", ""}, {"deep/er", ""}, {"deep/er/b.txt", "made"}}));
    EXPECT_EQ(fs::status(folder.path() / "a.txt").permissions(), fs::perms(0644));
}

TEST(FileBatchTest, AFailureInTheMiddlePutsEverythingBack)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "old");
    folder.write("blocked/inside.txt", "a folder cannot be replaced by a file");
    const auto before = folder.snapshot();
    {
        auto batch = FileBatch::open(folder.path()).value();
        ASSERT_TRUE(batch.put("a.txt", "new"));
        ASSERT_TRUE(batch.put("deep/b.txt", "made"));
        ASSERT_TRUE(batch.put("blocked", "file"));
        ASSERT_TRUE(batch.put("a.txt", "newer"));
        const auto done = batch.commit();
        ASSERT_FALSE(done);
        EXPECT_NE(done.error().message.find("blocked"), std::string::npos);
    }
    EXPECT_EQ(folder.snapshot(), before);
    {
        auto abandoned = FileBatch::open(folder.path()).value();
        ASSERT_TRUE(abandoned.put("deep/b.txt", "never committed"));
        EXPECT_FALSE(abandoned.put("a.txt/c.txt", "a file is no folder"));
    }
    EXPECT_EQ(folder.snapshot(), before);
}

TEST(FileBatchTest, OneAtATimeAndOnlyInAFolder)
{
    const TemporaryFolder folder;
    {
        const auto first = FileBatch::open(folder.path());
        EXPECT_FALSE(FileBatch::open(folder.path()));
    }
    EXPECT_TRUE(FileBatch::open(folder.path()));
    EXPECT_FALSE(FileBatch::open(folder.path() / "missing"));
}

} // namespace
} // namespace corvane::server::testing
