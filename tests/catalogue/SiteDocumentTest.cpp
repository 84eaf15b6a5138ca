#include "catalogue/SiteDocument.h"

#include "base/Json.h"
#include "base/Url.h"
#include "support/JsonCorpus.h"

#include <set>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string nested(std::size_t depth)
{
    return std::string(depth, '[') + std::string(depth, ']');
}

std::string withExtraValue(std::string_view value)
{
    return fmt::format(R"([{{"service":"a","icon":{},"url":"b","description":"c"}}])", value);
}

TEST(SiteDocument, KeepsEntriesInTheirOrderAndDropsWhatItDoesNotKnow)
{
    const auto sites = decodeSites(R"([
        {"description": "first", "icon": "x", "url": "https://a.test", "service": "A"},
        {"service": "", "url": "no address", "description": "",
         "more": {"url": 1, "deep": [{"service": null}, [], true, -1, 2.5]}},
        {"service": "A", "url": "\u00e9\/", "description": "twice\u0000"}])");
    const std::vector<Site> expected{
        {"A", "https://a.test", "first"}, {"", "no address", ""}, {"A", "é/", std::string("twice\0", 6)}};
    EXPECT_EQ(sites, expected);
    EXPECT_EQ(decodeSites(" [] "), std::vector<Site>());
}

TEST(SiteDocument, RefusesTheWholeDocumentForOneBrokenEntry)
{
    static constexpr std::string_view good = R"({"service":"a","url":"b","description":"c"})";
    for (const std::string_view broken :
         {R"({"service":"a","url":"b"})", R"({"service":"a","url":null,"description":"c"})",
          R"({"service":1,"url":"b","description":"c"})", R"({"service":"a","url":["b"],"description":"c"})",
          R"({"service":"a","url":"b","description":{"x":"c"}})", R"({"Service":"a","url":"b","description":"c"})",
          R"({"x":{"service":"a"},"url":"b","description":"c"})", R"("text")", "null", "[]", "{}", "7"}) {
        EXPECT_FALSE(decodeSites(fmt::format("[{},{}]", good, broken))) << broken;
        EXPECT_FALSE(decodeSites(fmt::format("[{},{}]", broken, good))) << broken;
    }
}

TEST(SiteDocument, RefusesWhatIsNoListAtAll)
{
    for (const std::string_view bytes : {"", " ", "null", "7", "\"[]\"", "{}", R"({"source_url":"https://a.test"})",
                                         R"({"service":"a","url":"b","description":"c"})", "[", "[]]", "[] x", "[,]",
                                         "<html>Not found</html>", "[{\"service\":\"\xFF\"}]"})
        EXPECT_FALSE(decodeSites(bytes)) << bytes;
    EXPECT_FALSE(decodeSites(std::string_view("[]\0 []", 6)));
}

TEST(SiteDocument, ReadsNestingUpToItsLimitOnly)
{
    EXPECT_TRUE(decodeSites(withExtraValue(nested(deepestJson - 2))));
    for (const std::size_t depth : {deepestJson - 1, std::size_t{1'000'000}})
        EXPECT_FALSE(decodeSites(withExtraValue(nested(depth))));
}

TEST(SiteDocument, AgreesWithTheTreeParserOnWhatIsJson)
{
    const auto corpus = testing::jsonCorpus();
    if (corpus.empty())
        GTEST_SKIP() << "The JSON parsing corpus is not beside the checkout.";
    for (const auto& [name, bytes] : corpus) {
        const auto document = withExtraValue(bytes);
        EXPECT_EQ(decodeSites(document).has_value(), parseJson(document).has_value()) << name;
        EXPECT_FALSE(name.starts_with("n_") && decodeSites(bytes)) << name;
    }
}

TEST(SiteDocument, ShippedCatalogueHoldsDistinctServicesWithSecureAddresses)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/sites.json", std::ios::binary);
    const auto sites = decodeSites(std::string(std::istreambuf_iterator<char>(file), {}));
    ASSERT_TRUE(sites);
    EXPECT_GE(sites->size(), 25U);
    std::set<std::string> names;
    for (const auto& site : *sites) {
        const auto url = Url::parse(site.url);
        EXPECT_TRUE(url && url->scheme() == "https" && !site.description.empty()) << site.service;
        EXPECT_TRUE(names.insert(site.service).second) << site.service;
    }
}

} // namespace
} // namespace corvane
