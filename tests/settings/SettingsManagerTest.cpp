#include "settings/SettingsManager.h"

#include "support/MemoryFileStore.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class SettingsManagerTest : public ::testing::Test {
protected:
    std::optional<AppSettings> onDisk() const { return files.read(file).and_then(decodeSettings); }

    testing::MemoryFileStore files;
    const Places places{.data = "/data"};
    const std::filesystem::path file = "/data/settings/settings.json";
};

TEST_F(SettingsManagerTest, ReplacesAFileThatCannotBeReadByTheDefaultsAndLeavesAReadableOneAlone)
{
    const AppSettings defaults;
    for (const std::optional<std::string>& bytes : std::vector<std::optional<std::string>>{
             std::nullopt, "", R"({"AllowSiteListUpdates":"Off","AnalyticsEnabled":"Off","AppTheme":"Dark"})"}) {
        files.files.clear();
        if (bytes)
            files.files[file] = *bytes;
        EXPECT_EQ(*SettingsManager(files, places).settings(), defaults);
        EXPECT_EQ(onDisk(), defaults);
    }
    EXPECT_TRUE(files.folders.contains(file.parent_path()));

    const std::string handWritten =
        R"({"x":1,"AllowSiteListUpdates":"Off","AnalyticsEnabled":"on","AppTheme":"Dark","DialogTheme":"light"})";
    files.files[file] = handWritten;
    SettingsManager manager(files, places);
    EXPECT_EQ(*manager.settings(), (AppSettings{"Off", "on", "Dark", "light", std::nullopt}));
    EXPECT_EQ(files.files[file], handWritten);
}

TEST_F(SettingsManagerTest, WritesAndTellsOnlyWhenTheRecordDiffers)
{
    SettingsManager manager(files, places);
    int told = 0;
    const auto subscription = manager.settings().observe([&](const AppSettings&) { ++told; });
    files.writes = 0;
    manager.updateSettings(*manager.settings());
    EXPECT_EQ(files.writes + told, 0);

    auto changed = *manager.settings();
    changed.SitesSourceUrl = ""; // Not the same as none.
    manager.updateSettings(changed);
    EXPECT_EQ(files.writes, 1);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(onDisk(), changed);
}

TEST_F(SettingsManagerTest, KeepsForThisRunWhatItCannotWrite)
{
    SettingsManager manager(files, places);
    files.failsToWrite = true;
    manager.updateSettings({.AppTheme = "Dark"});
    EXPECT_EQ(manager.settings()->AppTheme, "Dark");
    EXPECT_EQ(onDisk(), AppSettings());

    files.failsToWrite = false;
    manager.updateSettings({.AppTheme = "\xFF"}); // Not to be encoded.
    EXPECT_EQ(onDisk(), AppSettings());
}

TEST_F(SettingsManagerTest, FileHoldsWhatAnObserverChangedOnTheWay)
{
    SettingsManager manager(files, places);
    const auto subscription = manager.settings().observe([&](const AppSettings& settings) {
        if (settings.AppTheme == "Dark")
            manager.updateSettings({.AppTheme = "Light"});
    });
    manager.updateSettings({.AppTheme = "Dark"});
    EXPECT_EQ(onDisk()->AppTheme, "Light");
}

} // namespace
} // namespace corvane
