#include "platform/JsonDefaultsStore.h"

#include "platform/FileDescriptor.h"
#include "platform/PosixFileStore.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

using testing::TemporaryFolder;

class JsonDefaultsStoreTest : public ::testing::Test {
protected:
    JsonDefaultsStore open() { return {files_, file_}; }
    void put(std::string_view bytes) { std::ofstream(file_, std::ios::binary) << bytes; }

    TemporaryFolder folder_;
    PosixFileStore files_;
    std::filesystem::path file_ = folder_ / "some/defaults.json";
};

TEST_F(JsonDefaultsStoreTest, KeepsTypedValuesAcrossRuns)
{
    const std::string awkward("a\"\\\n\0é", 7);
    {
        auto defaults = open();
        defaults.setString("text", awkward);
        defaults.setBoolean("flag", false);
        defaults.setString("broken", "a\xFF");
        defaults.setString("gone", "x");
        defaults.remove("gone");
        defaults.remove("never there");
    }
    const auto defaults = open();
    EXPECT_EQ(defaults.string("text"), awkward);
    EXPECT_EQ(defaults.boolean("flag"), false);
    EXPECT_EQ(defaults.string("broken"), "a\uFFFD");
    EXPECT_EQ(defaults.string("flag"), std::nullopt) << "a Boolean is no string";
    EXPECT_EQ(defaults.boolean("text"), std::nullopt);
    EXPECT_EQ(defaults.string("gone"), std::nullopt);
    struct stat status{};
    ASSERT_EQ(::stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(JsonDefaultsStoreTest, TwoStoresOnOneFileKeepEachOthersKeys)
{
    auto first = open();
    auto second = open();
    first.setString("a", "1");
    second.setString("b", "2");
    first.setString("c", "3");
    second.remove("a");
    EXPECT_EQ(first.string("b"), "2") << "seen with the first's own change";
    const auto later = open();
    EXPECT_EQ(later.string("a"), std::nullopt);
    EXPECT_EQ(later.string("b"), "2");
    EXPECT_EQ(later.string("c"), "3");
}

TEST_F(JsonDefaultsStoreTest, LeavesMembersOfOtherTypesAlone)
{
    ASSERT_TRUE(files_.makeFolder(file_.parent_path()));
    put(R"({"number":1.5,"list":[1,{"x":null}],"text":"t"})");
    auto defaults = open();
    EXPECT_EQ(defaults.string("number"), std::nullopt);
    defaults.setString("text", "u");
    const auto document = parseJson(files_.read(file_).value_or(""));
    ASSERT_TRUE(document);
    EXPECT_EQ(compactJson(*document), R"({"list":[1,{"x":null}],"number":1.5,"text":"u"})");
}

TEST_F(JsonDefaultsStoreTest, AnUnreadableFileGivesWayToThePreviousGeneration)
{
    for (const auto* broken : {"", "{\"a\":\"ne", "[]", "null", "\"a\""}) {
        std::filesystem::remove_all(file_.parent_path());
        {
            auto defaults = open();
            defaults.setString("a", "old");
            defaults.setString("b", "newest");
        }
        put(broken);
        auto defaults = open();
        EXPECT_EQ(defaults.string("a"), "old") << broken;
        EXPECT_EQ(defaults.string("b"), std::nullopt) << broken;
        defaults.setString("c", "later");
        put(broken); // and the good generation was not replaced by the broken one
        EXPECT_EQ(open().string("a"), "old") << broken;
    }
}

TEST_F(JsonDefaultsStoreTest, ARunningProgramKnowsMoreThanThePreviousGeneration)
{
    auto defaults = open();
    defaults.setString("a", "old");
    defaults.setString("b", "newest");
    put("torn");
    defaults.setString("c", "later");
    EXPECT_EQ(defaults.string("b"), "newest");
    EXPECT_EQ(open().string("b"), "newest");
    EXPECT_EQ(open().string("c"), "later");
}

TEST_F(JsonDefaultsStoreTest, TheLastSaveWaitsForAnotherProcess)
{
    open().setString("a", "1");
    std::optional<FileDescriptor> holder(std::in_place, std::filesystem::path(file_) += ".lock", O_RDWR);
    ASSERT_EQ(::flock(holder->number(), LOCK_EX | LOCK_NB), 0);
    std::optional<JsonDefaultsStore> defaults(std::in_place, files_, file_);
    defaults->setString("b", "2");
    std::thread saving([&] { defaults.reset(); });
    put(R"({"a":"1","other":"3"})"); // what the holder does meanwhile
    holder.reset();
    saving.join();
    EXPECT_EQ(open().string("a"), "1");
    EXPECT_EQ(open().string("b"), "2");
    EXPECT_EQ(open().string("other"), "3");
}

TEST_F(JsonDefaultsStoreTest, ARemovedFileMeansABeginning)
{
    auto running = open();
    running.setString("a", "1");
    running.setString("a", "2");
    std::filesystem::remove(file_);
    EXPECT_EQ(open().string("a"), std::nullopt);
    running.setBoolean("b", true);
    EXPECT_EQ(open().string("a"), "2") << "a running program keeps what it knows";
}

TEST_F(JsonDefaultsStoreTest, AValueThatCannotBeWrittenLastsForThisRunAndIsTriedAgain)
{
    std::ofstream(folder_ / "some") << "a file where the folder should be";
    auto defaults = open();
    defaults.setString("a", "1");
    defaults.setBoolean("b", true);
    EXPECT_EQ(defaults.string("a"), "1");
    EXPECT_EQ(defaults.boolean("b"), true);
    std::filesystem::remove(folder_ / "some");
    EXPECT_EQ(open().string("a"), std::nullopt);
    defaults.setString("c", "3");
    EXPECT_EQ(open().string("a"), "1");
    EXPECT_EQ(open().string("c"), "3");
}

TEST_F(JsonDefaultsStoreTest, TextsThatWouldMakeAnUnreadableFileAreLeftOut)
{
    {
        auto defaults = open();
        defaults.setString("kept", "yes");
        defaults.setString("kept", std::string(FileStore::largestFile, 'x'));
        for (int i = 0; i < 20; ++i)
            defaults.setString(std::to_string(i), std::string(JsonDefaultsStore::longestText, 'x'));
    }
    const auto defaults = open();
    EXPECT_EQ(defaults.string("kept"), "yes");
    EXPECT_TRUE(defaults.string("0"));
    EXPECT_FALSE(defaults.string("19"));
}

TEST_F(JsonDefaultsStoreTest, NobodyWaitsForTheLockAndNothingIsLostByThat)
{
    open().setString("a", "1");
    const auto lock = std::filesystem::path(file_) += ".lock";
    std::optional<FileDescriptor> holder(std::in_place, lock, O_RDWR);
    ASSERT_EQ(::flock(holder->number(), LOCK_EX | LOCK_NB), 0);
    {
        JsonDefaultsStore defaults(files_, file_, std::chrono::milliseconds(20));
        defaults.setString("b", "2");
        defaults.remove("a");
        EXPECT_EQ(defaults.string("b"), "2");
        EXPECT_EQ(defaults.string("a"), std::nullopt);
        EXPECT_EQ(open().string("a"), "1") << "the holder has the file to itself";
        EXPECT_EQ(open().string("b"), std::nullopt);

        holder.reset();
        defaults.setString("c", "3");
        EXPECT_EQ(open().string("a"), std::nullopt);
        EXPECT_EQ(open().string("b"), "2");

        holder.emplace(lock, O_RDWR);
        ASSERT_EQ(::flock(holder->number(), LOCK_EX | LOCK_NB), 0);
        defaults.setString("d", "4");
        put(R"({"b":"2","other":"5"})");
        EXPECT_EQ(open().string("d"), std::nullopt);
    }
    EXPECT_EQ(open().string("d"), "4") << "its last chance";
    EXPECT_EQ(open().string("other"), "5");
}

TEST_F(JsonDefaultsStoreTest, ThePreviousGenerationOutlivesALinkWhoseTargetIsRewrittenInPlace)
{
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0; // who may write every folder
    if (isRoot && ::seteuid(nobody) != 0)
        GTEST_SKIP() << "There is nobody to become.";
    if (isRoot)
        ASSERT_EQ(::seteuid(0), 0);
    const TemporaryFolder elsewhere;
    const auto target = elsewhere / "target.json";
    std::ofstream(target) << R"({"a":"1"})";
    std::filesystem::create_directory(file_.parent_path());
    std::filesystem::create_symlink(target, file_);
    ::chmod(target.c_str(), 0666);
    ::chmod(elsewhere.path().c_str(), 0555);
    ::chmod(folder_.path().c_str(), 0755);
    ::chmod(file_.parent_path().c_str(), 0777);

    if (isRoot)
        ASSERT_EQ(::seteuid(nobody), 0);
    open().setString("a", "2");
    if (isRoot)
        ASSERT_EQ(::seteuid(0), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_EQ(open().string("a"), "2");
    put("torn");
    EXPECT_EQ(open().string("a"), "1");
    ::chmod(elsewhere.path().c_str(), 0755);
}

} // namespace
} // namespace corvane
