#include "platform/PosixIncomingFiles.h"

#include "support/MainContext.h"
#include "support/RunTask.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::keepResult;
using testing::TemporaryFolder;

std::string content(const fs::path& file)
{
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator(input), {}};
}

unsigned modeOf(const fs::path& file)
{
    struct stat status{};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

std::size_t entries(const fs::path& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

class PosixIncomingFilesTest : public ::testing::Test {
protected:
    /// Whether the file has been moved, waited for to the end; else why not.
    static std::string move(IncomingFile& file, const fs::path& target)
    {
        std::optional<Result<void>> result;
        TaskScope scope;
        scope.start(keepResult(file.moveTo(target), &result));
        EXPECT_TRUE(testing::iterateUntil([&] { return result.has_value(); }));
        return *result ? "moved" : result->error().message;
    }

    TemporaryFolder folder_;
    PosixIncomingFiles files_;
};

TEST_F(PosixIncomingFilesTest, CollectsBytesAndTheirDigestUntilTheFileIsMoved)
{
    const auto target = folder_ / "C.dmg";
    std::ofstream(target) << "old";
    ::chmod(target.c_str(), 0777);
    {
        auto file = files_.create(folder_.path());
        ASSERT_TRUE(file);
        const auto none = (*file)->sha256();
        EXPECT_EQ(none, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
        EXPECT_TRUE((*file)->write("a"));
        EXPECT_TRUE((*file)->write(""));
        EXPECT_NE((*file)->sha256(), none);
        EXPECT_TRUE((*file)->write("bc"));
        EXPECT_EQ((*file)->sha256(), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
        EXPECT_EQ(content(target), "old");
        EXPECT_EQ(move(**file, target), "moved");
    }
    EXPECT_EQ(content(target), "abc");
    EXPECT_EQ(modeOf(target), 0644U);
    EXPECT_EQ(entries(folder_.path()), 1U);
}

TEST_F(PosixIncomingFilesTest, GoesWithItsObjectWhenItWasNotMoved)
{
    fs::create_directory(folder_ / "C.dmg");
    std::ofstream(folder_ / "C.dmg" / "kept") << "x";
    {
        auto file = files_.create(folder_.path());
        ASSERT_TRUE(file && (*file)->write("abc"));
        EXPECT_EQ(entries(folder_.path()), 2U);
        EXPECT_EQ(move(**file, folder_ / "C.dmg"), "Cannot write “C.dmg”: Is a directory.");
        EXPECT_EQ(move(**file, folder_ / "none" / "C.dmg"), "Cannot write “C.dmg”: No such file or directory.");
    }
    EXPECT_EQ(entries(folder_.path()), 1U);
    EXPECT_EQ(content(folder_ / "C.dmg" / "kept"), "x");
    EXPECT_FALSE(files_.create(folder_ / "none"));
}

TEST_F(PosixIncomingFilesTest, MovesToAnotherFileSystemOrLeavesNothingThere)
{
    std::string name = "/dev/shm/corvane-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr)
        GTEST_SKIP() << "There is no second file system.";
    const fs::path elsewhere(name);
    struct stat here{}, there{};
    ::stat(folder_.path().c_str(), &here);
    ::stat(elsewhere.c_str(), &there);
    if (here.st_dev == there.st_dev) {
        fs::remove_all(elsewhere);
        GTEST_SKIP() << "There is no second file system.";
    }

    const std::string bytes(std::size_t{3} << 20U, 'x');
    {
        auto file = files_.create(folder_.path());
        ASSERT_TRUE(file && (*file)->write(bytes));
        std::optional<Result<void>> result;
        TaskScope scope;
        scope.start(keepResult((*file)->moveTo(elsewhere / "C.dmg"), &result));
        EXPECT_FALSE(result) << "a large copy takes several turns";
        EXPECT_EQ(entries(elsewhere), 1U);
        scope.cancel();
        EXPECT_EQ(entries(elsewhere), 0U);
        EXPECT_EQ(move(**file, elsewhere / "C.dmg"), "moved");
    }
    EXPECT_EQ(content(elsewhere / "C.dmg"), bytes);
    EXPECT_EQ(modeOf(elsewhere / "C.dmg"), 0644U);
    EXPECT_EQ(entries(elsewhere), 1U);
    EXPECT_EQ(entries(folder_.path()), 0U);
    fs::remove_all(elsewhere);
}

TEST_F(PosixIncomingFilesTest, SweepsWhatAKilledRunLeftBehind)
{
    const auto now = fs::file_time_type::clock::now();
    const auto old = folder_ / ".corvane-00000000-0000-4000-8000-000000000000.tmp";
    const auto young = folder_ / ".corvane-00000000-0000-4000-8000-000000000001.tmp";
    for (const auto& file : {old, young, folder_ / "old.tmp"})
        std::ofstream(file) << "x";
    fs::last_write_time(old, now - std::chrono::seconds(61));
    fs::last_write_time(folder_ / "old.tmp", now - std::chrono::hours(1));
    EXPECT_TRUE(files_.create(folder_.path()));
    EXPECT_FALSE(fs::exists(old));
    EXPECT_EQ(entries(folder_.path()), 2U);
}

TEST_F(PosixIncomingFilesTest, AFileThatStillArrivesIsNotSweptHoweverOldItLooks)
{
    auto arriving = files_.create(folder_.path());
    ASSERT_TRUE(arriving && (*arriving)->write("abc"));
    for (const auto& entry : fs::directory_iterator(folder_.path()))
        fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_TRUE(files_.create(folder_.path()));
    EXPECT_EQ(move(**arriving, folder_ / "C.dmg"), "moved");
    EXPECT_EQ(content(folder_ / "C.dmg"), "abc");
}

TEST_F(PosixIncomingFilesTest, IsCopiedFromAFileSystemThatRefusesItsMode)
{
    constexpr uid_t nobody = 65534;
    if (::geteuid() != 0 || ::seteuid(nobody) != 0)
        GTEST_SKIP() << "Only the superuser can become somebody whom a mode is refused.";
    ASSERT_EQ(::seteuid(0), 0);
    const TemporaryFolder elsewhere;
    ASSERT_EQ(::chown(elsewhere.path().c_str(), nobody, nobody), 0);
    {
        auto file = files_.create(folder_.path()); // the mode of another user's file cannot be set
        ASSERT_TRUE(file && (*file)->write("abc"));
        ::chmod(folder_.path().c_str(), 0755);
        ASSERT_EQ(::seteuid(nobody), 0);
        const auto refused = move(**file, folder_ / "C.dmg");
        const auto moved = move(**file, elsewhere / "C.dmg");
        ASSERT_EQ(::seteuid(0), 0);
        EXPECT_EQ(refused, "Cannot write “C.dmg”: Permission denied.");
        EXPECT_EQ(moved, "moved");
    }
    EXPECT_EQ(content(elsewhere / "C.dmg"), "abc");
    EXPECT_EQ(modeOf(elsewhere / "C.dmg"), 0644U);
    EXPECT_EQ(entries(elsewhere.path()), 1U);
    EXPECT_EQ(entries(folder_.path()), 0U);
}

} // namespace
} // namespace corvane
