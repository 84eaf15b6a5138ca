#include "catalogue/SiteDocument.h"

#include "base/Json.h"
#include "base/Url.h"
#include "support/JsonCorpus.h"
#include "support/MainContext.h"
#include "support/RunTask.h"

#include <array>
#include <random>
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

using Decoded = std::optional<std::vector<Site>>;

Decoded decodedInTurns(std::string_view bytes, std::size_t sliceSize)
{
    std::optional<Decoded> result;
    TaskScope scope;
    scope.start(testing::keepResult(decodeSitesInTurns(bytes, sliceSize), &result));
    EXPECT_TRUE(testing::iterateUntil([&] { return result.has_value(); }));
    return result.value_or(std::nullopt);
}

/// What a document holds, which must not depend on the slices in which it is read.
Decoded decoded(std::string_view bytes)
{
    auto whole = decodeSites(bytes);
    for (const std::size_t sliceSize : {std::size_t{1}, std::size_t{60}, JsonSlices::usualSize})
        EXPECT_EQ(decodedInTurns(bytes, sliceSize), whole) << sliceSize << " " << bytes.substr(0, 500);
    return whole;
}

/// Sound documents and ones with some bytes changed, all full of what could be mistaken for a place to cut.
std::string randomDocument(std::mt19937& random)
{
    static constexpr std::array<std::string_view, 8> texts{"", "a,b", "]", "}{", R"(\")", R"(\\)", "[\\u005d,", "é"};
    static constexpr std::array<std::string_view, 8> values{
        "1", "-2.5e3", "[[],{},[1,2]]", R"({"url":1,"x":[{}]})", "null", R"("],[\"}\\,")", "true", "[ ]"};
    static constexpr std::array<std::string_view, 5> spaces{"", "", " ", "\n\t", "\r "};
    static constexpr std::string_view damage = "[]{},:\"\\ \n0n\xFF\xEF";
    const auto one = [&](const auto& choices) { return choices[random() % std::size(choices)]; };

    std::string text = random() % 8 == 0 ? "\xEF\xBB\xBF" : "";
    text += fmt::format("{}[", one(spaces));
    for (auto left = random() % 6; left > 0; --left) {
        text += fmt::format(R"({}{{"service":"{}",{}"more":{},"url":"{}"{},"description":"{}"}}{}{})", one(spaces),
                            one(texts), one(spaces), one(values), one(texts), one(spaces), one(texts), one(spaces),
                            left > 1 ? "," : "");
    }
    text += fmt::format("]{}", one(spaces));
    for (auto changes = random() % 3; changes > 0; --changes) {
        const auto place = random() % text.size();
        if (random() % 2 == 0)
            text.insert(place, 1, one(damage));
        else
            text[place] = one(damage);
    }
    return text;
}

TEST(SiteDocument, IsReadInSlicesAsInOnePiece)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): every run sees the same documents
    int sound = 0, broken = 0;
    for (int i = 0; i < 4000; ++i)
        ++(decoded(randomDocument(random)) ? sound : broken);
    EXPECT_GT(sound, 1000);
    EXPECT_GT(broken, 1000);

    static constexpr std::string_view good = R"({"service":"a","url":"b","description":"c"})";
    for (const std::string_view form : {"[{0},{0}]", " [{0} ,\n{0} ] ", "\xEF\xBB\xBF [{0}]"})
        EXPECT_TRUE(decoded(fmt::format(fmt::runtime(form), good))) << form;
    for (const std::string_view form :
         {"[,]", "[{0},]", "[,{0}]", "[{0},,{0}]", "[{0}, ,{0}]", "[{0}{0}]", "[{0}]]", "[{0}],[{0}]", "[{0},{0}}}",
          "{{{0}]", "[{0},{0}", "[{0},{0},", "[{0}] x", " \xEF\xBB\xBF[{0}]", "\xEF\xBB[{0}]", "[{0},\xEF\xBB\xBF{0}]"})
        EXPECT_FALSE(decoded(fmt::format(fmt::runtime(form), good))) << form;
    EXPECT_FALSE(decoded("[" + std::string(300, ' ') + "," + std::string(good) + "]"));
    EXPECT_FALSE(decoded("[" + std::string(good) + "," + std::string(300, ' ') + "]"));
}

TEST(SiteDocument, LongDocumentsLeaveATurnAfterEverySlice)
{
    static constexpr std::string_view entry = R"({"service":"a","url":"b","description":"c"})"; // 43 bytes
    const auto document = fmt::format("[{0},{0},{0},{0},{0}]", entry);
    for (const auto& [sliceSize, turns] :
         std::vector<std::pair<std::size_t, int>>{{1, 4}, {43, 4}, {44, 2}, {150, 1}, {1000, 0}}) {
        std::optional<Decoded> result;
        TaskScope scope;
        scope.start(testing::keepResult(decodeSitesInTurns(document, sliceSize), &result));
        for (int turn = 0; turn < turns; ++turn) {
            EXPECT_FALSE(result) << sliceSize;
            g_main_context_iteration(nullptr, FALSE);
        }
        EXPECT_TRUE(result && *result && (*result)->size() == 5) << sliceSize;
    }
    std::optional<Decoded> never;
    {
        TaskScope scope;
        scope.start(testing::keepResult(decodeSitesInTurns(document, 1), &never));
        g_main_context_iteration(nullptr, FALSE);
    }
    testing::iteratePending();
    EXPECT_FALSE(never);
}

TEST(SiteDocument, KeepsEntriesInTheirOrderAndDropsWhatItDoesNotKnow)
{
    const auto sites = decoded(R"([
        {"description": "first", "icon": "x", "url": "https://a.test", "service": "A"},
        {"service": "", "url": "no address", "description": "",
         "more": {"url": 1, "deep": [{"service": null}, [], true, -1, 2.5]}},
        {"service": "A", "url": "\u00e9\/", "description": "twice\u0000"}])");
    const std::vector<Site> expected{
        {"A", "https://a.test", "first"}, {"", "no address", ""}, {"A", "é/", std::string("twice\0", 6)}};
    EXPECT_EQ(sites, expected);
    EXPECT_EQ(decoded(" [] "), std::vector<Site>());
}

TEST(SiteDocument, RefusesTheWholeDocumentForOneBrokenEntry)
{
    static constexpr std::string_view good = R"({"service":"a","url":"b","description":"c"})";
    for (const std::string_view broken :
         {R"({"service":"a","url":"b"})", R"({"service":"a","url":null,"description":"c"})",
          R"({"service":1,"url":"b","description":"c"})", R"({"service":"a","url":["b"],"description":"c"})",
          R"({"service":"a","url":"b","description":{"x":"c"}})", R"({"Service":"a","url":"b","description":"c"})",
          R"({"x":{"service":"a"},"url":"b","description":"c"})", R"("text")", "null", "[]", "{}", "7"}) {
        EXPECT_FALSE(decoded(fmt::format("[{},{}]", good, broken))) << broken;
        EXPECT_FALSE(decoded(fmt::format("[{},{}]", broken, good))) << broken;
    }
}

TEST(SiteDocument, RefusesWhatIsNoListAtAll)
{
    for (const std::string_view bytes : {"", " ", "null", "7", "\"[]\"", "{}", R"({"source_url":"https://a.test"})",
                                         R"({"service":"a","url":"b","description":"c"})", "[", "[]]", "[] x", "[,]",
                                         "<html>Not found</html>", "[{\"service\":\"\xFF\"}]"})
        EXPECT_FALSE(decoded(bytes)) << bytes;
    EXPECT_FALSE(decoded(std::string_view("[]\0 []", 6)));
}

TEST(SiteDocument, ReadsNestingUpToItsLimitOnly)
{
    EXPECT_TRUE(decoded(withExtraValue(nested(deepestJson - 2))));
    for (const std::size_t depth : {deepestJson - 1, std::size_t{1'000'000}})
        EXPECT_FALSE(decoded(withExtraValue(nested(depth))));
}

TEST(SiteDocument, AgreesWithTheTreeParserOnWhatIsJson)
{
    const auto corpus = testing::jsonCorpus();
    if (corpus.empty())
        GTEST_SKIP() << "The JSON parsing corpus is not beside the checkout.";
    for (const auto& [name, bytes] : corpus) {
        const auto document = withExtraValue(bytes);
        EXPECT_EQ(decoded(document).has_value(), parseJson(document).has_value()) << name;
        EXPECT_FALSE(name.starts_with("n_") && decoded(bytes)) << name;
    }
}

TEST(SiteDocument, ShippedCatalogueHoldsDistinctServicesWithSecureAddresses)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/sites.json", std::ios::binary);
    const auto sites = decoded(std::string(std::istreambuf_iterator<char>(file), {}));
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
