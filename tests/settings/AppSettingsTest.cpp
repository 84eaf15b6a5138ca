#include "settings/AppSettings.h"

#include "base/Json.h"
#include "support/JsonCorpus.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string document(std::string_view last)
{
    return fmt::format(
        R"({{"DialogTheme":"dark","AnalyticsEnabled":"on","AppTheme":"Light","AllowSiteListUpdates":""{}}})", last);
}

TEST(AppSettings, ReadsKeysInAnyOrderAndTextsAsTheyStand)
{
    const AppSettings plain{"", "on", "Light", "dark", std::nullopt};
    EXPECT_EQ(decodeSettings(document("")), plain);
    EXPECT_EQ(decodeSettings(document(R"(,"more":[{"AppTheme":1}])")), plain);
    for (const std::string_view address : {R"("https://a.test/x")", R"("https:\/\/a.test\/x")"})
        EXPECT_EQ(decodeSettings(document(fmt::format(R"(,"SitesSourceUrl":{})", address)))->SitesSourceUrl,
                  "https://a.test/x");
}

TEST(AppSettings, RefusesTheWholeFileForOneMissingOrForeignValue)
{
    for (const std::string_view key : {"AllowSiteListUpdates", "AnalyticsEnabled", "AppTheme", "DialogTheme"}) {
        auto json = *parseJson(*encodeSettings({}));
        for (const auto& value : {Json(nullptr), Json(true), Json(1), Json::array({"On"}), Json{{"On", "On"}}}) {
            json[std::string(key)] = value;
            EXPECT_FALSE(decodeSettings(compactJson(json))) << key << compactJson(value);
        }
        json.erase(std::string(key));
        EXPECT_FALSE(decodeSettings(compactJson(json))) << key;
    }
    for (const std::string_view value : {"null", "1", "[]", "false"})
        EXPECT_FALSE(decodeSettings(document(fmt::format(R"(,"SitesSourceUrl":{})", value)))) << value;
    for (const std::string_view bytes : {"", "{", "null", "[]", "\"On\"", "7"})
        EXPECT_FALSE(decodeSettings(bytes)) << bytes;
}

TEST(AppSettings, WritesSortedLinesWithEscapedSlashesAndTheAddressOnlyWhenThereIsOne)
{
    AppSettings settings;
    settings.AppTheme = R"(a\/b"é)";
    EXPECT_EQ(encodeSettings(settings), R"({
  "AllowSiteListUpdates": "On",
  "AnalyticsEnabled": "On",
  "AppTheme": "a\\\/b\"é",
  "DialogTheme": "default"
}
)");
    settings.SitesSourceUrl = "";
    EXPECT_TRUE(encodeSettings(settings)->ends_with("\"default\",\n  \"SitesSourceUrl\": \"\"\n}\n"));
    settings.AppTheme = "\xC3";
    EXPECT_FALSE(encodeSettings(settings));
}

TEST(AppSettings, ReadsBackWhatItWrites)
{
    for (const std::string text : {"", "/", "\\/", "\\\\//\"", "line\nbreak\ttab", "\x01\x7F", "\U0001F426 \u202E"}) {
        const AppSettings settings{text, text + "/", "/" + text, text + text, text};
        EXPECT_EQ(decodeSettings(*encodeSettings(settings)), settings) << text;
    }
    const AppSettings withNul{std::string("a\0b", 3), "", "", "", std::nullopt};
    EXPECT_EQ(decodeSettings(*encodeSettings(withNul)), withNul);
}

TEST(AppSettings, SurvivesEveryDocumentOfTheParsingCorpus)
{
    const auto corpus = testing::jsonCorpus();
    if (corpus.empty())
        GTEST_SKIP() << "The JSON parsing corpus is not beside the checkout.";
    for (const auto& [name, bytes] : corpus) {
        EXPECT_FALSE(decodeSettings(bytes)) << name;
        const auto extended = document(",\"more\":" + bytes);
        EXPECT_EQ(decodeSettings(extended).has_value(), parseJson(extended).has_value()) << name;
    }
}

} // namespace
} // namespace corvane
