#include "settings/Color.h"

#include "settings/Contrast.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {

static std::ostream& operator<<(std::ostream& out, const Color& color)
{
    return out << '(' << color.red << ' ' << color.green << ' ' << color.blue << ' ' << color.opacity << ')';
}

namespace {

Color bytes(double red, double green, double blue, double opacity = 1)
{
    return {red / 255, green / 255, blue / 255, opacity};
}

using Cases = std::vector<std::pair<std::string, std::optional<Color>>>;

TEST(Color, ReadsHexadecimalDigitsUpToTheFirstOtherCharacter)
{
    for (const auto& [text, expected] : Cases{
             {"#102030", bytes(16, 32, 48)},
             {" \t#aBcDeF\t ", bytes(0xAB, 0xCD, 0xEF)},
             {"#10203080", bytes(16, 32, 48, 128 / 255.0)},
             {"#00000000", Color::clear()},
             {"#12zzzz", bytes(0, 0, 0x12)},
             {"#1234zzzz", bytes(0, 0, 0x12, 0x34 / 255.0)},
             {"#0x1234", bytes(0, 0, 0)},
             {"#12345é", bytes(1, 0x23, 0x45)}, // Six characters in seven bytes.
             {"#1é", std::nullopt},
             {"#", std::nullopt},
             {"#fff", std::nullopt},
             {"#fffff", std::nullopt},
             {"#fffffff", std::nullopt},
             {"#fffffffff", std::nullopt},
             {"#zfffff", std::nullopt},
             {"#-12345", std::nullopt},
             {"#+12345", std::nullopt},
             {"# 12345", std::nullopt},
             {"##12345", std::nullopt},
             {"#12345\n", bytes(1, 0x23, 0x45)}, // A line break is a character and no digit.
             {"\n#123456", std::nullopt},
             {"123456", std::nullopt},
         })
        EXPECT_EQ(parseCSSColor(text), expected) << text;
}

TEST(Color, ReadsComponentsWithoutClampingThem)
{
    for (const auto& [text, expected] : Cases{
             {"rgba(10, 20, 30, 0.5)", bytes(10, 20, 30, 0.5)},
             {"rgb(10,20,30)", bytes(10, 20, 30)},
             {"rgb(10,20,30,0.25)", bytes(10, 20, 30, 0.25)},
             {"\trgba(10,20,30 ", bytes(10, 20, 30)},
             {"rgb(+1e2,-.5,5.)", bytes(100, -0.5, 5)},
             {"rgba(300,0,1E+2,7)", bytes(300, 0, 100, 7)},
             {"rgba(1,2,3,50%)", bytes(1, 2, 3)},
             {"rgba(1,2,3, ,0.5)", bytes(1, 2, 3)},
             {"rgba(1,2,3,,0.5)", bytes(1, 2, 3, 0.5)},
             {"rgba(1,2,3,0.5,x)", bytes(1, 2, 3, 0.5)},
             {"rgb(,1,,2,3,)", bytes(1, 2, 3)},
             {"rgb(rgba(1),2),rgb(3))", bytes(1, 2, 3)},
             {"rgb(10,20)", std::nullopt},
             {"rgb()", std::nullopt},
             {"rgb( ,1,2)", std::nullopt},
             {"RGB(1,2,3)", std::nullopt},
             {"Rgba(1,2,3,1)", std::nullopt},
             {"rgb (1,2,3)", std::nullopt},
             {"rgb(1 2 3)", std::nullopt},
             {"rgb(1,2,3);", std::nullopt},
             {"rgb(1,2,\n3)", std::nullopt},
             {"rgb(1,2,3%)", std::nullopt},
             {"rgb(1,2,1e)", std::nullopt},
             {"rgb(1,2,+-3)", std::nullopt},
             {"rgb(1,2,++3)", std::nullopt},
             {"rgb(1,2,+)", std::nullopt},
             {"rgb(1,2,0x10)", std::nullopt},
             {"rgb(1,2,inf)", std::nullopt},
             {"rgb(1,2,-infinity)", std::nullopt},
             {"rgb(1,2,nan)", std::nullopt},
             {"rgb(1e-999,-2e-324,0.5e-99999999999999999999)", bytes(0, 0, 0)}, // too small for a double
             {"rgb(1,2,1e999)", std::nullopt},
             {"rgb(1,2,-1e99999999999999999999)", std::nullopt},
             {"rgb(1,2,1e-999x)", std::nullopt},
             {"rgba(1,2,3,1e-999)", bytes(1, 2, 3, 0)},
             {"rgba(1,2,3,nan)", bytes(1, 2, 3)},
         })
        EXPECT_EQ(parseCSSColor(text), expected) << text;
}

TEST(Color, KnowsNoNameButTransparent)
{
    for (const auto& [text, expected] : Cases{
             {" TransParent\t", Color::clear()},
             {"transparent\n", std::nullopt},
             {"white", std::nullopt},
             {"hsl(0, 0%, 0%)", std::nullopt},
             {"var(--text)", std::nullopt},
             {"", std::nullopt},
         })
        EXPECT_EQ(parseCSSColor(text), expected) << text;
}

TEST(Color, MakesGreyOfALiteralThatIsNone)
{
    const Color grey{0.5, 0.5, 0.5, 1};
    for (const auto& [text, expected] : Cases{
             {"#2F92F5", bytes(47, 146, 245)},
             {"2f92f5", bytes(47, 146, 245)},
             {"2F92F500", bytes(47, 146, 245, 0)},
             {"##2F92F5", grey},
             {" 2F92F5", grey},
             {"fff", grey},
             {"", grey},
         })
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

TEST(Contrast, AgreesWithPublishedRatios)
{
    struct Case {
        std::string text, below;
        double ratio;
    };
    for (const auto& [text, below, ratio] : std::vector<Case>{{"#000000", "#ffffff", 21},
                                                              {"#ffffff", "#000000", 21},
                                                              {"#777777", "#ffffff", 4.48},
                                                              {"#0000ff", "#ffffff", 8.59},
                                                              {"#00000080", "#ffffff", 3.98},
                                                              {"#ffffff00", "#123456", 1}})
        EXPECT_NEAR(contrastRatio(colorFromHex(text), colorFromHex(below)), ratio, 0.05) << text << below;
}

TEST(Contrast, ReadsBestInBlackOrWhite)
{
    for (const auto& [below, text] : std::vector<std::pair<std::string, Color>>{{"#000000", Color::white()},
                                                                                {"#ffffff", Color::black()},
                                                                                {"#66b2ff", Color::black()},
                                                                                {"#0b63ce", Color::white()}})
        EXPECT_EQ(readableOn(colorFromHex(below)), text) << below;
}

} // namespace
} // namespace corvane
