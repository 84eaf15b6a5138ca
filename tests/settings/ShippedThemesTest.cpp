#include "settings/Color.h"
#include "settings/Contrast.h"
#include "settings/DialogThemeOption.h"
#include "settings/ThemeJSON.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

#include <gtest/gtest.h>

namespace corvane {
namespace {

constexpr double leastContrast = 4.5; // WCAG 2.1, level AA, text of ordinary size

std::optional<ThemeJSON> shippedTheme(std::string_view name)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/" + std::string(name) + ".json", std::ios::binary);
    return decodeTheme(std::string{std::istreambuf_iterator<char>(file), {}});
}

double worstContrast(const Color& text, const std::vector<Color>& surfaces)
{
    double worst = 21;
    for (const auto& surface : surfaces)
        worst = std::min(worst, contrastRatio(text, surface));
    return worst;
}

class ShippedTheme : public ::testing::TestWithParam<DialogThemeOption> {
protected:
    void SetUp() override
    {
        const auto theme = shippedTheme(GetParam().value);
        ASSERT_TRUE(theme);
        colors = theme->colors;
    }

    static Color color(const std::optional<std::string>& text) { return parseCSSColor(text.value()).value(); }

    std::vector<Color> backgrounds() const
    {
        std::vector<Color> stops;
        stops.reserve(colors.background.size());
        for (const auto& text : colors.background)
            stops.push_back(color(text));
        return stops;
    }

    /// Every opaque colour that text may lie on: the stops of the background, and on each of them every card, the list
    /// and the pale wash of the first card behind a form.
    std::vector<Color> surfaces() const
    {
        auto layers = std::vector{color(colors.listBackground), color(colors.card.at(0))};
        layers.back().opacity *= 0.18;
        for (const auto& text : colors.card)
            layers.push_back(color(text));

        auto all = backgrounds();
        for (const auto& stop : backgrounds()) {
            for (const auto& layer : layers)
                all.push_back(composed(layer, stop));
        }
        return all;
    }

    ThemeJSON::Colors colors;
};

TEST_P(ShippedTheme, LeavesNothingToTheDefaults)
{
    const auto theme = shippedTheme(GetParam().value);
    EXPECT_EQ(colors.background.size(), 3);
    EXPECT_EQ(colors.card.size(), 3);
    for (const auto* text :
         {&colors.cardBorder, &colors.buttonBevelLight, &colors.buttonBevelDark, &colors.buttonBevelDarkRight})
        EXPECT_TRUE(text->and_then(parseCSSColor));
    EXPECT_TRUE(colors.headingTextShadow && theme->effects.cardBoxShadow && theme->effects.btnBoxShadow);
    const auto& spacing = theme->spacing;
    EXPECT_TRUE(spacing.padding && spacing.cardPadding && spacing.gap && spacing.borderRadius &&
                spacing.buttonBorderRadius);
}

TEST_P(ShippedTheme, KeepsItsTextsReadableWhereverTheyStand)
{
    for (const auto* text : {&colors.text, &colors.textMuted, &colors.headingText, &colors.link})
        EXPECT_GE(worstContrast(color(*text), surfaces()), leastContrast) << text->value();

    auto contents = surfaces();
    for (auto& surface : contents)
        surface = composed(color(colors.contentBackground), surface);
    for (const auto* text : {&colors.contentText, &colors.text, &colors.textMuted, &colors.headingText, &colors.link})
        EXPECT_GE(worstContrast(color(*text), contents), leastContrast) << "on content: " << text->value();
}

TEST_P(ShippedTheme, KeepsItsButtonsReadable)
{
    const auto contrastOn = [](const Color& text, const std::optional<std::string>& button) {
        return contrastRatio(text, color(button));
    };
    EXPECT_GE(contrastOn(color(colors.buttonDonateText), colors.buttonDonate), leastContrast);
    EXPECT_GE(contrastOn(color(colors.buttonSecondaryText), colors.buttonSecondary), leastContrast);
    EXPECT_GE(
        std::max(contrastOn(Color::white(), colors.buttonPrimary), contrastOn(Color::black(), colors.buttonPrimary)),
        leastContrast);
    // The button itself stands out from what it lies on, though less than text must.
    EXPECT_GE(worstContrast(color(colors.buttonPrimary), backgrounds()), 3);
}

TEST_P(ShippedTheme, CarriesTheFixedTextColoursOfItsDialogs)
{
    // Release notes write in this colour while the desktop is dark, whatever the theme: only the light theme cannot
    // carry it.
    if (GetParam().value != "light")
        EXPECT_GE(worstContrast(color("#f5f5f7"), backgrounds()), leastContrast);
    // The support address is white in these two.
    if (GetParam().value == "default" || GetParam().value == "dark")
        EXPECT_GE(worstContrast(Color::white(), surfaces()), leastContrast);
}

INSTANTIATE_TEST_SUITE_P(Themes, ShippedTheme, ::testing::ValuesIn(dialogThemeOptions),
                         [](const auto& info) { return std::string(info.param.value); });

TEST(ShippedThemes, DifferFromOneAnotherInEveryLargeColour)
{
    std::set<std::string> seen;
    for (const auto& [label, name] : dialogThemeOptions) {
        const auto theme = shippedTheme(name);
        ASSERT_TRUE(theme) << name;
        for (const auto* group : {&theme->colors.background, &theme->colors.card}) {
            for (const auto& text : std::set(group->begin(), group->end()))
                EXPECT_TRUE(seen.insert(text).second) << name << ' ' << text;
        }
    }
}

} // namespace
} // namespace corvane
