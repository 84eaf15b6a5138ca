#include "settings/ThemeManager.h"

#include "settings/DialogThemeOption.h"
#include "settings/ThemeName.h"
#include "support/MemoryResources.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

constexpr auto builtInStyle =
    "<style id=\"theme-vars\">:root{--bg-1:#565B61;--bg-2:#4B5057;--bg-3:#40454B;--card-1:#3D5063;--card-2:#476070;"
    "--card-3:#516375;--card-border:rgba(81,99,117,0.8);--list-background:var(--card-2);--text:#ffffff;"
    "--text-muted:#d0d0d0;--content-text:var(--text);--content-background:transparent;--link:#d0ecff;"
    "--btn-primary:#2F92F5;--btn-donate:#F7D700;--btn-donate-text:#ffffff;--btn-secondary:#F7D700;"
    "--btn-secondary-text:#1a1a1a;--btn-bevel-light:rgba(255,255,255,0.45);--btn-bevel-dark:rgba(0,0,0,0.45);"
    "--btn-bevel-dark-right:rgba(0,0,0,0.35);--heading-text:var(--text);--heading-text-shadow:none;"
    "--spacing-padding:15px;--spacing-card-padding:20px 26px;--spacing-gap:8px;--spacing-radius:14px;"
    "--spacing-btn-radius:8px;--card-box-shadow:0 8px 32px rgba(0,0,0,0.2);--btn-box-shadow:none}</style>";

class ThemeManagerTest : public ::testing::Test {
protected:
    DialogThemeColors colorsOf(const std::string& file)
    {
        resources.files["mine.json"] = file;
        return themes.dialogColors("mine");
    }
    /// Whether the style block of `file` holds each of `declarations`.
    ::testing::AssertionResult declares(const std::string& file, const std::vector<std::string>& declarations)
    {
        resources.files["mine.json"] = file;
        const auto css =
            ";" + themes.themeCSS("mine").substr(std::string_view("<style id=\"theme-vars\">:root{").size());
        for (const auto& declaration : declarations) {
            if (!css.contains(";" + declaration + ";"))
                return ::testing::AssertionFailure() << declaration << " is not in " << css;
        }
        return ::testing::AssertionSuccess();
    }

    testing::MemoryResources resources;
    ThemeManager themes{resources};
};

TEST_F(ThemeManagerTest, FindsAThemeByEverySpellingOfItsName)
{
    const std::vector<std::pair<std::string, std::string>> names{
        {"Chiseled Steel", "chiseled_steel"},
        {"chiseled-steel", "chiseled_steel"},
        {" \tCHISELED_STEEL \t", "chiseled_steel"},
        {"a  b--c -d", "a__b__c__d"},
        {"dark\n", "dark\n"},
        {"Corvane Colors", "corvane"},
        {"corvane-theme", "corvane"},
        {" CORVA ", "corvane"},
        {"corva_", "corva_"},
        {"", ""},
        {" \t ", ""},
    };
    for (const auto& [name, expected] : names)
        EXPECT_EQ(normalizedThemeName(name), expected) << name;
    for (const auto& [label, value] : dialogThemeOptions)
        EXPECT_EQ(normalizedThemeName(label), value);
}

TEST_F(ThemeManagerTest, FallsBackToTheDefaultThemeAndThenToItself)
{
    EXPECT_EQ(themes.themeCSS("dark"), builtInStyle);
    EXPECT_EQ(themes.dialogColors("dark"), defaultDialogColors());

    const auto link = [this](std::string_view name) { return themes.dialogColors(name).link; };
    resources.files["default.json"] = R"({"colors":{"link":"#000001"}})";
    resources.files["dark.json"] = R"({"colors":{"link":"#000002"}})";
    resources.files["broken.json"] = R"({"colors":{"link":"#000003"},"spacing":{"gap":7.5}})";
    EXPECT_EQ(link("Dark"), colorFromHex("000002"));
    for (const auto name : {"missing", "broken", "Default", "", "../dark"}) {
        EXPECT_EQ(link(name), colorFromHex("000001")) << name;
        EXPECT_TRUE(themes.themeCSS(name).contains("--link:#000001;")) << name;
    }

    // The files are read at every call.
    resources.files["default.json"] = "not JSON";
    resources.files.erase("dark.json");
    EXPECT_EQ(themes.dialogColors("dark"), defaultDialogColors());
    EXPECT_EQ(themes.themeCSS("broken"), builtInStyle);
}

TEST_F(ThemeManagerTest, ReplacesEachColourThatIsMissingOrUnreadableByItsOwnDefault)
{
    const auto& builtIn = defaultDialogColors();
    EXPECT_EQ(builtIn.headingText, Color::white());
    EXPECT_EQ(builtIn.buttonDonateText, Color::black());

    auto colors = colorsOf(R"({"colors":{"background":["#010203"],"card":["no","#040506","",5.5]}})");
    EXPECT_EQ(colors, builtIn); // The number makes the file unreadable.

    colors = colorsOf(R"({"colors":{"background":["#010203"],"card":["no","#040506","","#070809"]}})");
    EXPECT_EQ(colors.background1, colorFromHex("010203"));
    EXPECT_EQ(colors.background2, builtIn.background2);
    EXPECT_EQ(colors.card1, builtIn.card1);
    EXPECT_EQ(colors.card2, colorFromHex("040506"));
    EXPECT_EQ(colors.card3, builtIn.card3);

    EXPECT_EQ(colorsOf(R"({"colors":{"text":"#123"}})"), builtIn);
    EXPECT_EQ(colorsOf(R"({"colors":{"text":"#123456"}})").headingText, colorFromHex("123456"));
    EXPECT_EQ(colorsOf(R"({"colors":{"text":"#123456","headingText":"red"}})").headingText, colorFromHex("123456"));
    EXPECT_EQ(colorsOf(R"({"colors":{"headingText":"transparent"}})").headingText, Color::clear());

    colors = colorsOf(R"({"spacing":{"borderRadius":10}})");
    EXPECT_EQ(colors.cornerRadius, 10);
    EXPECT_EQ(colors.buttonCornerRadius, 8);
}

TEST_F(ThemeManagerTest, TakesEachPaletteColourFromItsOwnMember)
{
    const auto colors = colorsOf(R"({"colors":{"background":["#000001","#000002","#000003"],
        "card":["#000004","#000005","#000006"],"text":"#000007","textMuted":"#000008","headingText":"#000009",
        "link":"#00000a","buttonPrimary":"#00000b","buttonDonate":"#00000c","buttonDonateText":"#00000d"},
        "spacing":{"borderRadius":0,"buttonBorderRadius":-3}})");
    const auto blue = [](double byte) { return Color{0, 0, byte / 255, 1}; };
    EXPECT_EQ(colors, (DialogThemeColors{blue(1), blue(2), blue(3), blue(4), blue(5), blue(6), blue(7), blue(8),
                                         blue(9), blue(10), blue(11), blue(12), blue(13), 0, -3}));
}

TEST_F(ThemeManagerTest, LetsTheSecondaryButtonStandInForAnAbsentDonationColourOnly)
{
    const auto donate = [this](const std::string& members) {
        return colorsOf("{\"colors\":{\"buttonSecondary\":\"#112233\"" + members + "}}").buttonDonate;
    };
    EXPECT_EQ(donate(""), colorFromHex("112233"));
    EXPECT_EQ(donate(R"(,"buttonDonate":"#445566")"), colorFromHex("445566"));
    EXPECT_EQ(donate(R"(,"buttonDonate":"gold")"), defaultDialogColors().buttonDonate);
    EXPECT_EQ(colorsOf(R"({"colors":{"buttonSecondary":"gold"}})").buttonDonate, defaultDialogColors().buttonDonate);

    EXPECT_TRUE(
        declares(R"({"colors":{"buttonSecondary":"#112233"}})", {"--btn-donate:#112233", "--btn-secondary:#112233"}));
    EXPECT_TRUE(
        declares(R"({"colors":{"buttonSecondary":"a","buttonDonate":""}})", {"--btn-donate:", "--btn-secondary:a"}));
    EXPECT_TRUE(declares(R"({"colors":{"buttonDonate":"b"}})", {"--btn-donate:b", "--btn-secondary:#F7D700"}));
}

TEST_F(ThemeManagerTest, WritesValuesIntoTheStyleBlockAsTheyStand)
{
    EXPECT_TRUE(declares(R"({"colors":{"background":["#1"],"text":"#123","link":"","cardBorder":" a;b:<\"é\u0001"}})",
                         {"--bg-1:#1", "--bg-2:#4B5057", "--text:#123", "--link:", "--card-border: a;b:<\"é\x01"}));
    EXPECT_TRUE(declares(R"({"spacing":{"borderRadius":10,"gap":-0,"buttonBorderRadius":-9223372036854775808}})",
                         {"--spacing-radius:10px", "--spacing-padding:15px", "--spacing-gap:0px",
                          "--spacing-btn-radius:-9223372036854775808px"}));
}

TEST_F(ThemeManagerTest, GivesEachPropertyTheValueOfItsOwnMember)
{
    resources.files["mine.json"] = R"({"colors":{"background":["1","2","3","x"],"card":["4","5","6"],"cardBorder":"7",
        "listBackground":"8","text":"9","textMuted":"10","contentText":"11","contentBackground":"12","link":"13",
        "buttonPrimary":"14","buttonDonate":"15","buttonDonateText":"16","buttonSecondary":"17",
        "buttonSecondaryText":"18","buttonBevelLight":"19","buttonBevelDark":"20","buttonBevelDarkRight":"21",
        "headingText":"22","headingTextShadow":"23"},"spacing":{"padding":24,"cardPadding":"25","gap":26,
        "borderRadius":27,"buttonBorderRadius":28},"effects":{"cardBoxShadow":"29","btnBoxShadow":"30"}})";
    EXPECT_EQ(themes.themeCSS("Mine"),
              "<style id=\"theme-vars\">:root{--bg-1:1;--bg-2:2;--bg-3:3;--card-1:4;--card-2:5;--card-3:6;"
              "--card-border:7;--list-background:8;--text:9;--text-muted:10;--content-text:11;--content-background:12;"
              "--link:13;--btn-primary:14;--btn-donate:15;--btn-donate-text:16;--btn-secondary:17;"
              "--btn-secondary-text:18;--btn-bevel-light:19;--btn-bevel-dark:20;--btn-bevel-dark-right:21;"
              "--heading-text:22;--heading-text-shadow:23;--spacing-padding:24px;--spacing-card-padding:25;"
              "--spacing-gap:26px;--spacing-radius:27px;--spacing-btn-radius:28px;--card-box-shadow:29;"
              "--btn-box-shadow:30}</style>");
}

} // namespace
} // namespace corvane
