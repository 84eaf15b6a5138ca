#include "settings/ThemeJSON.h"

#include "base/Json.h"
#include "settings/DialogThemeColors.h"
#include "settings/ThemeStyle.h"
#include "support/JsonCorpus.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ThemeJSON, TakesEveryMemberAsOptionalAndIgnoresOtherKeys)
{
    EXPECT_EQ(decodeTheme("{}"), ThemeJSON{});
    EXPECT_EQ(decodeTheme(R"({"Colors":1,"colors":{},"spacing":{"x":null},"effects":{}})"), ThemeJSON{});

    ThemeJSON expected;
    expected.colors.background = {"a", "", "c", "d"};
    expected.colors.headingTextShadow = "";
    expected.spacing.gap = std::numeric_limits<std::int64_t>::min();
    expected.spacing.padding = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(decodeTheme(R"({"colors":{"background":["a","","c","d"],"card":[],"headingTextShadow":""},
                              "spacing":{"gap":-9223372036854775808,"padding":9223372036854775807}})"),
              expected);
}

TEST(ThemeJSON, RefusesTheWholeFileForOneWrongType)
{
    for (const std::string_view bytes :
         {"", "null", "[]", "7", "\"{}\"", "{", "{}{}", "{\"colors\":{\"text\":\"\xFF\"}}"})
        EXPECT_FALSE(decodeTheme(bytes)) << bytes;
    for (const auto group : {"colors", "spacing", "effects"}) {
        for (const auto value : {"null", "[]", "1", "\"\"", "true"})
            EXPECT_FALSE(decodeTheme(fmt::format(R"({{"{}":{}}})", group, value))) << group << value;
    }

    const std::vector<std::tuple<std::string, std::vector<std::string>, std::vector<std::string>>> groups{
        {"colors",
         {"cardBorder", "listBackground", "text", "textMuted", "contentText", "contentBackground", "link",
          "buttonPrimary", "buttonSecondary", "buttonSecondaryText", "buttonDonate", "buttonDonateText",
          "buttonBevelLight", "buttonBevelDark", "buttonBevelDarkRight", "headingText", "headingTextShadow"},
         {"null", "1", "[\"#000000\"]", "{}", "false"}},
        {"colors", {"background", "card"}, {"null", "\"#000000\"", "[1]", "[\"a\",\"b\",\"c\",null]", "{\"0\":\"a\"}"}},
        {"spacing",
         {"padding", "gap", "borderRadius", "buttonBorderRadius"},
         {"null", "7.5", "8.0", "1e1", "\"8\"", "[8]", "true", "9223372036854775808", "-9223372036854775809", "1e400"}},
        {"spacing", {"cardPadding"}, {"null", "8", "[]"}},
        {"effects", {"cardBoxShadow", "btnBoxShadow"}, {"null", "0", "[\"none\"]"}},
    };
    for (const auto& [group, keys, values] : groups) {
        for (const auto& key : keys) {
            for (const auto& value : values)
                EXPECT_FALSE(decodeTheme(fmt::format(R"({{"{}":{{"{}":{}}}}})", group, key, value))) << key << value;
        }
    }
}

TEST(ThemeJSON, SurvivesEveryDocumentOfTheParsingCorpus)
{
    const auto corpus = testing::jsonCorpus();
    if (corpus.empty())
        GTEST_SKIP() << "The JSON parsing corpus is not beside the checkout.";
    for (const auto& [name, bytes] : corpus) {
        EXPECT_EQ(decodeTheme(bytes).has_value(), parseJson(bytes).transform(&Json::is_object).value_or(false)) << name;
        for (const auto frame : {R"({{"more":{}}})", R"({{"colors":{}}})", R"({{"colors":{{"background":{}}}}})",
                                 R"({{"colors":{{"text":{}}}}})", R"({{"spacing":{{"gap":{}}}}})"}) {
            const auto framed = fmt::format(fmt::runtime(frame), bytes);
            const auto theme = decodeTheme(framed);
            EXPECT_TRUE(!theme || parseJson(framed)) << name;
            if (theme) {
                resolvedDialogColors(*theme);
                EXPECT_TRUE(themeStyleBlock(*theme).ends_with("}</style>")) << name;
            }
        }
    }
}

} // namespace
} // namespace corvane
