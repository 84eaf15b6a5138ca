#include "base/Json.h"
#include "commands/PublishFolderCommand.h"
#include "publishing/CatalogueDocument.h"
#include "server/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

const std::filesystem::path samples = CORVANE_SOURCE_DIR "/server/publish";

class SampleDocumentsTest : public ::testing::Test {
protected:
    SampleDocumentsTest() { isMade = copyPublishFolder(samples, place).has_value(); }

    TemporaryFolder folder;
    std::filesystem::path place = folder.path() / "new/copy";
    bool isMade = false;
};

TEST_F(SampleDocumentsTest, ACopyIsMadeWholeAndNeverOverSomethingElse)
{
    ASSERT_TRUE(isMade);
    const auto before = folder.snapshot();
    EXPECT_GT(before.at("new/copy/Corvane/sites/sites.json").size(), 100U);
    for (const auto& [from, to] : {std::pair{samples, place}, std::pair{samples, place / "index.html"},
                                   std::pair{samples / "missing", folder.path() / "other"}})
        EXPECT_FALSE(copyPublishFolder(from, to)) << to;
    EXPECT_EQ(folder.snapshot(), before);

    std::filesystem::create_directory(folder.path() / "empty");
    EXPECT_TRUE(copyPublishFolder(samples, (folder.path() / "empty").string() + "/"));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "empty/index.html"));
}

TEST_F(SampleDocumentsTest, EveryArchivedPageThatAnIndexListsIsThere)
{
    const auto all = folder.snapshot();
    for (const std::string archive : {"Corvane/sites/archive/", "Corvane/mac_whatsnew/Previous_Releases/"}) {
        const auto index = parseJson(all.at("new/copy/" + archive + "index.json")).value();
        ASSERT_GE(index["archives"].size(), 2U);
        for (const auto& entry : index["archives"])
            EXPECT_TRUE(
                all.at("new/copy/" + archive + entry["file"].get<std::string>()).contains("class=\"whatsnew\""));
    }
}

TEST_F(SampleDocumentsTest, APlainStartFindsNothingNewerAndDocumentsThatCanBeRead)
{
    const auto all = folder.snapshot();
    const auto version = parseJson(all.at("new/copy/Corvane/mac_whatsnew/version.json")).value();
    EXPECT_EQ(version["version"], CORVANE_VERSION_TEXT);
    for (const auto* placeholder : {"{{VERSION}}", "{{BUILD_DATE}}"})
        EXPECT_TRUE(all.at("new/copy/Corvane/mac_whatsnew/whatsnew.html").contains(placeholder));
    for (const auto* catalogue : {"sites.json", "redirect.json"})
        EXPECT_TRUE(checkedCatalogue(all.at(std::string("new/copy/Corvane/sites/") + catalogue))) << catalogue;
}

} // namespace
} // namespace corvane::server::testing
