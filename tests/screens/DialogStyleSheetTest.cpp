#include "screens/DialogStyleSheet.h"

#include "settings/Contrast.h"
#include "settings/DialogThemeOption.h"
#include "settings/ThemeJSON.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include <gtest/gtest.h>

namespace corvane {
namespace {

/// What a style sheet says for each selector, property by property.
using Declarations = std::map<std::string, std::map<std::string, std::string>>;

std::string stripped(std::string_view text)
{
    const auto start = text.find_first_not_of(" \n");
    return start == std::string_view::npos ? std::string()
                                           : std::string(text.substr(start, text.find_last_not_of(" \n") - start + 1));
}

std::vector<std::string> pieces(std::string_view text, char separator)
{
    std::vector<std::string> all;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (auto piece = stripped(text.substr(0, end)); !piece.empty())
            all.push_back(std::move(piece));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return all;
}

Declarations parsed(const std::string& sheet)
{
    Declarations all;
    for (const auto& rule : pieces(sheet, '}')) {
        const auto brace = rule.find('{');
        for (const auto& selector : pieces(rule.substr(0, brace), ',')) {
            for (const auto& declaration : pieces(rule.substr(brace + 1), ';')) {
                const auto colon = declaration.find(':');
                all[selector][declaration.substr(0, colon)] = stripped(declaration.substr(colon + 1));
            }
        }
    }
    return all;
}

DialogThemeColors shippedColors(std::string_view name)
{
    std::ifstream file(CORVANE_SOURCE_DIR "/resources/" + std::string(name) + ".json", std::ios::binary);
    return resolvedDialogColors(decodeTheme(std::string{std::istreambuf_iterator<char>(file), {}}).value());
}

TEST(DialogStyleSheetTest, TouchesOnlyThemedDialogsAndLeavesNothingOpen)
{
    const auto sheet = dialogStyleSheet(defaultDialogColors());
    for (const auto* open : {"$", "var(", ":has(", "nan", "inf"})
        EXPECT_FALSE(sheet.contains(open)) << open;
    EXPECT_EQ(std::ranges::count(sheet, '{'), std::ranges::count(sheet, '}'));
    const auto rules = parsed(sheet);
    EXPECT_GT(rules.size(), 60U);
    for (const auto& [selector, declarations] : rules)
        EXPECT_TRUE(selector.starts_with(".themed-dialog")) << selector;
    EXPECT_EQ(rules.at(".themed-dialog .form").at("background-color"), "rgba(61,80,99,0.180)");
    EXPECT_EQ(rules.at(".themed-dialog .copied-label").at("background-color"), "rgba(81,99,117,0.750)");
}

TEST(DialogStyleSheetTest, WritesValuesThatTheToolkitCanReadWhateverTheThemeSays)
{
    auto colors = defaultDialogColors();
    colors.card1 = {2, -1, 0.5, 7};
    colors.background1 = Color::clear();
    colors.cornerRadius = 1e300;
    colors.buttonCornerRadius = -4;
    const auto rules = parsed(dialogStyleSheet(colors));
    EXPECT_EQ(rules.at(".themed-dialog .card").at("background-color"), "rgba(255,0,128,0.550)");
    EXPECT_EQ(rules.at(".themed-dialog .card").at("border-radius"), "100.0px");
    EXPECT_EQ(rules.at(".themed-dialog button").at("border-radius"), "0.0px");
    // Nothing lies below a window: white text gets black there.
    EXPECT_TRUE(rules.at(".themed-dialog").at("background-image").contains("rgba(0,0,0,1.000)"));
}

/// The sheet of a theme that ships with the program.
class ShippedSheet : public ::testing::TestWithParam<DialogThemeOption> {
protected:
    static constexpr double leastContrast = 4.5; // WCAG 2.1, level AA, text of ordinary size

    Color color(const std::string& selector, const std::string& property) const
    {
        return parseCSSColor(rules.at(".themed-dialog " + selector).at(property)).value();
    }

    /// The worst contrast of a text on a fill, wherever in the window the fill lies.
    double contrastOn(const Color& text, const Color& fill) const
    {
        double worst = 21;
        for (const auto& stop : {colors.background1, colors.background2, colors.background3}) {
            for (const auto& below : {stop, composed(color(".form", "background-color"), stop)})
                worst = std::min(worst, contrastRatio(text, composed(fill, below)));
        }
        return worst;
    }

    DialogThemeColors colors = shippedColors(GetParam().value);
    Declarations rules = parsed(dialogStyleSheet(colors));
};

TEST_P(ShippedSheet, KeepsTheLabelsOfButtonsReadableInEveryState)
{
    for (const std::string button : {"button.primary", "button.segment:checked", "button.donate", "button.secondary",
                                     "button.segment", "dropdown > button", "button.flat-row", "switch:checked"}) {
        for (const std::string state : {"", ":hover", ":active"}) {
            const auto plain = ".themed-dialog " + button;
            const auto rule = rules.find(std::string(plain).append(state));
            if (rule == rules.end())
                continue;
            const auto label = rules.at(plain).contains("color") ? color(button, "color") : colors.text;
            const auto& fill = rule->second.at("background-color");
            EXPECT_GE(contrastOn(label, parseCSSColor(fill).value_or(Color::clear())), leastContrast)
                << button << state;
        }
    }
}

TEST_P(ShippedSheet, KeepsTextsReadableOnEverySurface)
{
    for (const std::string surface : {".form", ".card", ".copied-label", "popover > contents"}) {
        for (const auto& text : {colors.text, colors.textMuted, colors.headingText, colors.link})
            EXPECT_GE(contrastOn(text, color(surface, "background-color")), leastContrast) << surface;
    }
    for (const auto& text : {colors.text, colors.textMuted, colors.headingText, colors.link})
        EXPECT_GE(contrastOn(text, Color::clear()), leastContrast);
    EXPECT_GE(contrastOn(colors.text, color("row:hover", "background-color")), leastContrast);
}

TEST_P(ShippedSheet, ShowsWhereTheKeyboardIsAndWhatIsOn)
{
    // WCAG 2.1 asks 3 of what is no text.
    EXPECT_GE(contrastOn(colors.link, Color::clear()), 3);
    EXPECT_GE(contrastOn(color("switch:checked", "background-color"), Color::clear()), 3);
    EXPECT_GE(contrastRatio(color("switch:checked > slider", "background-color"),
                            color("switch:checked", "background-color")),
              3);
}

TEST_P(ShippedSheet, KeepsDocumentsInTheThemeWhateverTheDesktopSays)
{
    const bool isLight = GetParam().value == "light";
    EXPECT_EQ(isLightTheme(colors), isLight);
    const std::string scheme = isLight ? "light !important" : "dark !important";

    const auto notes = parsed(releaseNotesReaderStyle(colors));
    EXPECT_EQ(notes.at(":root").at("color-scheme"), scheme);
    for (const auto* part : {"body", ".whatsnew h2", ".whatsnew .intro", ".whatsnew .item-desc", ".whatsnew .closing"})
        EXPECT_TRUE(notes.at(part).at("color").starts_with("var(--")) << part;
    for (const auto& [selector, declarations] : notes) {
        for (const auto& [property, value] : declarations)
            EXPECT_TRUE(value.ends_with(" !important")) << selector << ' ' << property;
    }
    for (const auto* badge : {".whatsnew .badge-feat", ".whatsnew .badge-enh", ".whatsnew .badge-fix"}) {
        const auto text = colorFromHex(notes.at(badge).at("color").substr(0, 7));
        const auto fill = colorFromHex(notes.at(badge).at("background").substr(0, 7));
        EXPECT_GE(contrastRatio(text, fill), leastContrast) << badge;
    }

    const auto notification = parsed(notificationReaderStyle(colors));
    EXPECT_EQ(notification.at(":root").at("color-scheme"), scheme);
    const auto text = notification.at("html").at("color");
    ASSERT_TRUE(text.ends_with(" !important"));
    EXPECT_GE(contrastOn(parseCSSColor(text.substr(0, text.find(" !"))).value(), Color::clear()), leastContrast);
    EXPECT_TRUE(notification.at("html").at("background").starts_with("linear-gradient(")); // never the page before
}

INSTANTIATE_TEST_SUITE_P(Themes, ShippedSheet, ::testing::ValuesIn(dialogThemeOptions),
                         [](const auto& info) { return std::string(info.param.value); });

} // namespace
} // namespace corvane
