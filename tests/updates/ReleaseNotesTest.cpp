#include "updates/ReleaseNotes.h"

#include <fstream>
#include <iterator>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ReleaseNotesTest, FillsInEveryPlaceholderAsPlainText)
{
    struct Case {
        std::string_view page, version, expected;
    };
    for (const auto& [page, version, expected] : std::vector<Case>{
             {"<h2>{{VERSION}}</h2>{{VERSION}} of {{BUILD_DATE}}", "1.3", "<h2>1.3</h2>1.3 of May 5, 2025"},
             {"{{version}} {{ VERSION }} {VERSION} {{VERSION}", "1.3",
              "{{version}} {{ VERSION }} {VERSION} {{VERSION}"},
             {"{{VERSION}}", "<b>&", "<b>&"},
             {"{{VERSION}}", "{{BUILD_DATE}}", "May 5, 2025"}, // one after the other
             {"{{VERSION}}", "{{VERSION}}", "{{VERSION}}"},
             {"{{{VERSION}}}", "1", "{1}"},
             {"", "1", ""},
         })
        EXPECT_EQ(filledReleaseNotes(page, version, "May 5, 2025"), expected) << page;
}

TEST(ReleaseNotesTest, RefusesAVersionThatWouldBlowUpThePage)
{
    std::string page;
    for (int i = 0; i < 100'000; ++i)
        page += "{{VERSION}}";
    EXPECT_TRUE(filledReleaseNotes(page, std::string(80, '1'), ""));
    EXPECT_FALSE(filledReleaseNotes(page, std::string(1'000'000, '1'), ""));
    EXPECT_FALSE(filledReleaseNotes(page, std::string(80, '1') + "{{BUILD_DATE}}", std::string(100, 'x')));
}

TEST(ReleaseNotesTest, TheShippedPageHasBothPlaceholdersAndTheClassesThatAreStyled)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/whatsnew.html");
    const std::string page((std::istreambuf_iterator<char>(file)), {});
    for (const auto* part :
         {"{{VERSION}}", "{{BUILD_DATE}}", "class=\"whatsnew\"", "class=\"intro\"", "class=\"item\"", "<h2>",
          "class=\"item-desc\"", "class=\"closing\"", "\"badge-feat\"", "\"badge-enh\"", "\"badge-fix\""})
        EXPECT_TRUE(page.contains(part)) << part;
    EXPECT_FALSE(page.contains("<script") || page.contains("<body")) << "it is a fragment";
}

} // namespace
} // namespace corvane
