#include "catalogue/ArchiveIndex.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string listed(const std::vector<ArchiveEntry>& entries)
{
    std::string text;
    for (const auto& [url, title] : entries)
        text += title + "=" + url.text() + " ";
    return text;
}

TEST(ArchiveIndexTest, ListsWhatIsUsableInItsOrder)
{
    const std::vector<std::pair<std::string_view, std::string_view>> cases{
        {R"({"archives":[{"file":"b.html","title":"B","more":1},{"file":"a.html","title":"A"}],"x":[]})",
         "B=http://h/c/old/b.html A=http://h/c/old/a.html "},
        {R"({"archives":[{"file":"a"},{"title":"A"},{"file":"","title":"A"},{"file":"a","title":""},
                         {"file":7,"title":"A"},{"file":"a","title":null},{},{"file":"z","title":"Z"}]})",
         "Z=http://h/c/old/z "},
        {R"({"archives":[{"file":"a b","title":"A"},{"file":"%zz","title":"B"},{"file":"ä","title":"Ä"}]})",
         "Ä=http://h/c/old/%C3%A4 "},
        {R"({"archives":[{"file":"a?b","title":"javascript:1"}]})", "javascript:1=http://h/c/old/a?b "},
        {R"({"archives":[]})", ""},
        {R"({"archives":[{"file":"a","title":"A"},"x"]})", ""}, // not an array of objects
        {R"({"archives":[{"file":"a","title":"A"},null]})", ""},
        {R"({"archives":{"file":"a","title":"A"}})", ""},
        {R"({"archives":null})", ""},
        {R"({"Archives":[{"file":"a","title":"A"}]})", ""},
        {R"([{"file":"a","title":"A"}])", ""},
        {R"({"archives":[{"file":"a","title":"A"}])", ""},
        {"<html>", ""},
        {"", ""},
    };
    for (const auto& [document, expected] : cases)
        EXPECT_EQ(listed(decodeArchiveIndex(document, "http://h/c/old/")), expected) << document;
    EXPECT_EQ(listed(decodeArchiveIndex(R"({"archives":[{"file":"a","title":"A"}]})", "no folder")), "");
}

} // namespace
} // namespace corvane
