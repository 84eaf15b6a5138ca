#include "analytics/AnalyticsPage.h"

#include "support/TestEndpoints.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string pageFor(std::string_view resource, std::string_view tag, std::string measurementId = "G-A1B2C3D4E5")
{
    auto endpoints = testing::endpointsAt();
    endpoints.tag = *Url::parse(tag);
    endpoints.measurementId = std::move(measurementId);
    return analyticsPage(resource, endpoints);
}

TEST(AnalyticsPageTest, FillsInEveryPlaceholderAndNothingElse)
{
    EXPECT_EQ(
        pageFor("a __GA4_DEBUG_MODE__ '__GA4_DEBUG_MODE__' __TAG_URL__;__MEASUREMENT_ID____TAG_SOURCE__ __TAG__ _",
                "https://tag.example.org/gtag/js?a=b&c"),
        "a false 'false' \"https://tag.example.org/gtag/js?a=b&c\";\"G-A1B2C3D4E5\"https://tag.example.org "
        "__TAG__ _");
    EXPECT_EQ(pageFor("\u00fc__TAG_URL__", "http://127.0.0.1/__MEASUREMENT_ID__"),
              "\u00fc\"http://127.0.0.1/__MEASUREMENT_ID__\"");
}

TEST(AnalyticsPageTest, WritesLiteralsThatStayLiterals)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\"; alert(1); \"", R"("\"; alert(1); \"")"},
        {R"(\")", R"("\\\"")"},
        {"</script><!--", R"("\u003c/script>\u003c!--")"},
        {"a\nb\r", R"("a\nb\r")"},
        {"", R"("")"},
    };
    for (const auto& [measurementId, literal] : cases)
        EXPECT_EQ(pageFor("__MEASUREMENT_ID__", "http://127.0.0.1/", measurementId), literal);
}

TEST(AnalyticsPageTest, AllowsTheTagInAFormThatAPolicyKnows)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"https://Tag.Example.org:443/gtag/js", "https://tag.example.org"},
        {"http://127.0.0.1:3002/gtag/js", "http://127.0.0.1:3002"},
        {"https://b\u00fccher.example/", "https://xn--bcher-kva.example"},
        {"http://[::1]:3002/gtag/js", "http:"},
    };
    for (const auto& [tag, source] : cases)
        EXPECT_EQ(pageFor("__TAG_SOURCE__", tag), source);
}

TEST(AnalyticsPageTest, LeavesNothingOpenInTheProgramsOwnPage)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/analytics_webview.html");
    const std::string resource{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(resource.contains("__GA4_DEBUG_MODE__"));
    const auto page = pageFor(resource, "http://127.0.0.1:3002/gtag/js");
    EXPECT_FALSE(page.contains("__"));
    EXPECT_TRUE(page.contains("const tagUrl = \"http://127.0.0.1:3002/gtag/js\";"));
    EXPECT_TRUE(page.contains("const measurementId = \"G-A1B2C3D4E5\";"));
    EXPECT_TRUE(page.contains("script-src 'unsafe-inline' http://127.0.0.1:3002;"));
}

} // namespace
} // namespace corvane
