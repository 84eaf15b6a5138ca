#include "platform/FolderResources.h"

#include "support/TemporaryFolder.h"

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(FolderResourcesTest, FindsNamesInTheFirstFolderThatHasThemAndNothingOutside)
{
    const testing::TemporaryFolder folder;
    for (const auto* name : {"first", "second", "first/kept.txt"})
        std::filesystem::create_directory(folder / name);
    for (const auto* name : {"secret.txt", "first/both.txt", "second/both.txt", "second/kept.txt", "second/v1.2.txt"})
        std::ofstream(folder / name) << name;
    const FolderResources resources({folder / "none", folder / "first", folder / "second"});

    EXPECT_EQ(resources.read("both", "txt"), "first/both.txt");
    EXPECT_EQ(resources.locate("kept", "txt"), folder / "second/kept.txt") << "a folder is no resource";
    EXPECT_EQ(resources.read("v1.2", "txt"), "second/v1.2.txt");
    const auto absolute = (folder / "secret").string();
    const std::vector<std::pair<std::string, std::string>> outside{
        {"../secret", "txt"}, {absolute, "txt"}, {"..", "txt"},          {"both", "./txt"},
        {"", "txt"},          {"both", ""},      {"second/both", "txt"}, {std::string("both\0", 5), "txt"},
        {"missing", "txt"},
    };
    for (const auto& [name, extension] : outside) {
        EXPECT_EQ(resources.locate(name, extension), std::nullopt) << name;
        EXPECT_EQ(resources.read(name, extension), std::nullopt) << name;
    }
}

TEST(FolderResourcesTest, LooksBesideTheProgramsPrefix)
{
    EXPECT_EQ(FolderResources::foldersFor("/usr/bin/corvane").front(), "/usr/share/corvane");
    EXPECT_EQ(FolderResources::foldersFor("/opt/x/bin/corvane").front(), "/opt/x/share/corvane");
}

} // namespace
} // namespace corvane
