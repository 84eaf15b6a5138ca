#include "updates/HostedVersion.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string told(const std::optional<HostedVersion>& hosted)
{
    if (!hosted)
        return "none";
    return hosted->version + " " + (hosted->downloadURL ? hosted->downloadURL->text() : "-") + " " +
           hosted->sha256.value_or("-");
}

TEST(HostedVersionTest, ReadsAVersionFileAndWhatIsUsableOfItsLink)
{
    const std::vector<std::pair<std::string_view, std::string_view>> cases{
        {R"({"version":"1.3","downloadURL":"https://h/C.dmg","sha256":"ab","more":[]})", "1.3 https://h/C.dmg ab"},
        {R"({"version":"1.3"})", "1.3 - -"},
        {R"({"version":"newest","downloadURL":"no address"})", "newest - -"},
        {R"({"version":"1.3","downloadURL":7})", "1.3 - -"},
        {R"({"version":"1.3","downloadURL":null,"sha256":null})", "1.3 - -"},
        {R"({"version":"1.3","sha256":["ab"]})", "1.3 - "}, // a digest that nothing matches
        {R"({"version":"1.3","sha256":""})", "1.3 - "},
        {R"({"version":"1.3","downloadURL":"javascript:x.dmg"})", "1.3 - -"},
        {R"({"version":"1.3","downloadURL":"JavaScript:x","sha256":"ab"})", "1.3 - ab"},
        {R"({"version":"1.3","downloadURL":"data:text/plain,x"})", "1.3 data:text/plain,x -"},
        {R"({"version":""})", "none"},
        {R"({"version":1.3})", "none"},
        {R"({"Version":"1.3"})", "none"},
        {R"({})", "none"},
        {R"(["1.3"])", "none"},
        {R"("1.3")", "none"},
        {"<html>", "none"},
        {"", "none"},
    };
    for (const auto& [document, expected] : cases)
        EXPECT_EQ(told(decodeHostedVersion(document)), expected) << document;
}

TEST(HostedVersionTest, ReadsTheFirstOfTheStoresResults)
{
    const std::vector<std::pair<std::string_view, std::string_view>> cases{
        {R"({"resultCount":2,"results":[{"version":"1.3"},{"version":"1.4"}]})", "1.3"},
        {R"({"results":[{"version":""}]})", ""},
        {R"({"results":[{"name":"x"},{"version":"1.4"}]})", "none"},
        {R"({"results":[{"version":1.3}]})", "none"},
        {R"({"results":[{"version":"1.3"},7]})", "none"}, // not an array of objects
        {R"({"results":[]})", "none"},
        {R"({"results":{"version":"1.3"}})", "none"},
        {R"({"version":"1.3"})", "none"},
        {R"([{"version":"1.3"}])", "none"},
        {"", "none"},
    };
    for (const auto& [document, expected] : cases)
        EXPECT_EQ(decodeStoreVersion(document).value_or("none"), expected) << document;
}

} // namespace
} // namespace corvane
