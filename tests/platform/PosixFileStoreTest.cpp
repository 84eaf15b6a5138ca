#include "platform/PosixFileStore.h"

#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;

class PosixFileStoreTest : public ::testing::Test {
protected:
    void put(const fs::path& file, std::string_view bytes) { std::ofstream(file, std::ios::binary) << bytes; }
    std::string content(const fs::path& file)
    {
        std::ifstream input(file, std::ios::binary);
        return {std::istreambuf_iterator(input), {}};
    }
    unsigned mode(const fs::path& file)
    {
        struct stat status{};
        EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
        return status.st_mode & 07777U;
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            found.push_back(entry.path().filename().string());
        std::ranges::sort(found);
        return found;
    }

    TemporaryFolder folder_;
    PosixFileStore store_;
};

TEST_F(PosixFileStoreTest, ReplacesFilesWholeAndKeepsTheirMode)
{
    const std::string bytes("new\0bytes", 9);
    const auto umaskBefore = ::umask(0777);
    EXPECT_TRUE(store_.write(folder_ / "new", bytes));
    ::umask(0);
    EXPECT_TRUE(store_.write(folder_ / "open", bytes));
    EXPECT_TRUE(store_.makeFolder(folder_ / "a/b/c/"));
    ::umask(0777);
    EXPECT_TRUE(store_.makeFolder(folder_ / "d/e"));
    ::umask(umaskBefore);
    EXPECT_EQ(mode(folder_ / "new"), 0600U);
    EXPECT_EQ(mode(folder_ / "open"), 0600U);
    for (const auto* made : {"a", "a/b", "a/b/c", "d", "d/e"})
        EXPECT_EQ(mode(folder_ / made), 0700U) << made;

    ::chmod((folder_ / "new").c_str(), 0644);
    EXPECT_TRUE(store_.write(folder_ / "new", "shorter"));
    EXPECT_EQ(mode(folder_ / "new"), 0644U);
    EXPECT_EQ(store_.read(folder_ / "new"), "shorter");
    EXPECT_EQ(store_.read(folder_ / "open"), bytes);
    EXPECT_EQ(names(), (std::vector<std::string>{"a", "d", "new", "open"})) << "no temporary file is left";
}

TEST_F(PosixFileStoreTest, WritesThroughLinksToTheirTarget)
{
    TemporaryFolder elsewhere;
    put(elsewhere / "target", "old");
    fs::create_symlink(elsewhere / "target", folder_ / "second");
    fs::create_symlink("second", folder_ / "first");
    fs::create_symlink(elsewhere / "to-be-made", folder_ / "dangling");
    fs::create_symlink("loop", folder_ / "loop");

    EXPECT_TRUE(store_.write(folder_ / "first", "new"));
    EXPECT_TRUE(store_.write(folder_ / "dangling", "made"));
    EXPECT_FALSE(store_.write(folder_ / "loop", "x"));
    EXPECT_EQ(content(elsewhere / "target"), "new");
    EXPECT_EQ(content(elsewhere / "to-be-made"), "made");
    for (const auto* link : {"first", "second", "dangling", "loop"})
        EXPECT_TRUE(fs::is_symlink(folder_ / link)) << link;
    EXPECT_EQ(store_.read(folder_ / "first"), "new");
    EXPECT_EQ(store_.read(folder_ / "loop"), std::nullopt);
    EXPECT_TRUE(store_.exists(folder_ / "loop")) << "a name is taken by a link that leads nowhere too";
}

TEST_F(PosixFileStoreTest, ReadsRegularFilesOfBoundedSizeOnly)
{
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder_ / "folder");
    put(folder_ / "largest", std::string(FileStore::largestFile, 'x'));
    put(folder_ / "larger", std::string(FileStore::largestFile + 1, 'x'));
    for (const auto& file : {folder_ / "pipe", folder_ / "folder", folder_ / "larger", folder_ / "none",
                             folder_ / "larger/x", fs::path("/dev/zero"), fs::path()})
        EXPECT_EQ(store_.read(file), std::nullopt) << file;
    const auto largest = store_.read(folder_ / "largest");
    EXPECT_TRUE(largest && largest->size() == FileStore::largestFile);
}

TEST_F(PosixFileStoreTest, FailsWithoutDamageWhereSomethingIsInTheWay)
{
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder_ / "folder");
    put(folder_ / "file", "old");
    const auto before = names();
    for (const auto& file : {folder_ / "pipe", folder_ / "folder", folder_ / "file/below", folder_ / "none/below"}) {
        const auto written = store_.write(file, "x");
        ASSERT_FALSE(written) << file;
        EXPECT_FALSE(written.error().message.empty());
    }
    EXPECT_FALSE(store_.makeFolder(folder_ / "file"));
    EXPECT_FALSE(store_.makeFolder(folder_ / "file/below"));
    EXPECT_TRUE(store_.makeFolder(folder_ / "folder")) << "it is there already";
    EXPECT_FALSE(store_.remove(folder_ / "folder"));
    EXPECT_FALSE(store_.remove(folder_ / "none"));
    EXPECT_EQ(names(), before);
    EXPECT_EQ(content(folder_ / "file"), "old");
    EXPECT_TRUE(store_.remove(folder_ / "file"));
    EXPECT_FALSE(store_.exists(folder_ / "file"));
}

TEST_F(PosixFileStoreTest, KeepsTheOldBytesWhenThereIsNoRoom)
{
    put(folder_ / "file", "old");
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    rlimit unlimited{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const rlimit small{.rlim_cur = 1000, .rlim_max = unlimited.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto written = store_.write(folder_ / "file", std::string(5000, 'x')); // fails after 1000 bytes
    ::setrlimit(RLIMIT_FSIZE, &unlimited);
    ::signal(SIGXFSZ, handler);
    EXPECT_FALSE(written);
    EXPECT_EQ(content(folder_ / "file"), "old");
    EXPECT_EQ(names(), std::vector<std::string>{"file"});
}

TEST_F(PosixFileStoreTest, RewritesInPlaceWhereTheFolderCannotBeWritten)
{
    if (::geteuid() == 0 && ::seteuid(65534) != 0)
        GTEST_SKIP() << "nobody to become: the superuser may write every folder";
    const bool wasRoot = ::getuid() == 0;
    if (wasRoot)
        ASSERT_EQ(::seteuid(0), 0);
    put(folder_ / "file", "old and longer");
    ::chmod((folder_ / "file").c_str(), 0666);
    ::chmod(folder_.path().c_str(), 0555);
    if (wasRoot)
        ASSERT_EQ(::seteuid(65534), 0);

    const auto shorter = store_.write(folder_ / "file", "new");
    const auto afterShorter = content(folder_ / "file");
    const auto longer = store_.write(folder_ / "file", "much longer than the old one");
    const auto afterLonger = content(folder_ / "file");
    const auto added = store_.write(folder_ / "other", "x");

    if (wasRoot)
        ASSERT_EQ(::seteuid(0), 0);
    ::chmod(folder_.path().c_str(), 0755);
    EXPECT_TRUE(shorter);
    EXPECT_EQ(afterShorter, "new");
    EXPECT_TRUE(longer);
    EXPECT_EQ(afterLonger, "much longer than the old one");
    EXPECT_FALSE(added);
    EXPECT_EQ(names(), std::vector<std::string>{"file"});
}

TEST_F(PosixFileStoreTest, SweepsItsOwnOldTemporaryFilesOnly)
{
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::minutes(2);
    const std::string ours = ".corvane-00000000-0000-4000-8000-00000000000";
    const std::vector<std::string> others{".corvane-my.tmp",    ours + "g.tmp", ours + ".tmp",
                                          ours + "00.tmp",      ours + "0",     ours.substr(1) + "0.tmp",
                                          "x" + ours + "0.tmp", ".other.tmp"};
    for (const auto& name : others)
        put(folder_ / name, "x");
    put(folder_ / (ours + "0.tmp"), "x");
    fs::create_directory(folder_ / (ours + "1.tmp"));
    ASSERT_EQ(::mkfifo((folder_ / (ours + "2.tmp")).c_str(), 0600), 0);
    for (const auto& entry : fs::directory_iterator(folder_.path()))
        fs::last_write_time(entry.path(), longAgo);
    fs::create_symlink(".other.tmp", folder_ / (ours + "3.tmp"));
    put(folder_ / (ours + "4.tmp"), "fresh");

    auto left = names();
    std::erase(left, ours + "0.tmp");
    left.emplace_back("file");
    ASSERT_TRUE(store_.write(folder_ / "file", "x"));
    std::ranges::sort(left);
    EXPECT_EQ(names(), left);
}

} // namespace
} // namespace corvane
