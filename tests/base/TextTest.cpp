#include "base/Text.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::string_literals;

TEST(TextTest, TrimsUnicodeBlanksAtBothEndsOnly)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", ""},
        {" \t\r\n", ""},
        {"\u00A0\u2003a b\u3000\u2028", "a b"},
        {"\u200Ba", "\u200Ba"}, // a zero width space is no white space
        {"\xA0"
         "a",
         "\xA0"
         "a"}, // a lone byte is no U+00A0
        {"a\x85", "a\x85"},
        {"\0 a"s, "\0 a"s},
        {"\u0085\u1680x\u205F", "x"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(trimmed(text), expected) << text;
    EXPECT_EQ(trimmedBlanks(" \ta\n \t"), "a\n");

    for (const auto& [text, length] : std::vector<std::pair<std::string, std::size_t>>{
             {"", 0}, {"a ", 0}, {" \r\n\u2003a", 6}, {"\u3000", 3}, {"\xA0 ", 0}, {" \xE2\x80", 1}})
        EXPECT_EQ(leadingWhiteSpace(text), length) << text;
}

TEST(TextTest, TellsWellFormedUtf8AndRepairsTheRest)
{
    const std::vector<std::pair<std::string, std::string>> broken{
        {"a\xFF", "a\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"},                     // overlong
        {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},           // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond U+10FFFF
        {"\xE2\x82", "\uFFFD\uFFFD"},                     // cut off
        {"\x80z", "\uFFFDz"},
    };
    for (const auto& [bytes, repaired] : broken) {
        EXPECT_FALSE(isValidUtf8(bytes)) << repaired;
        EXPECT_EQ(repairedUtf8(bytes), repaired);
    }
    for (const auto& good : {""s, "\0"s, "é\u0800\uFFFF\U00010000\U0010FFFF"s}) {
        EXPECT_TRUE(isValidUtf8(good));
        EXPECT_EQ(repairedUtf8(good), good);
    }
}

TEST(TextTest, CutsBetweenCodePoints)
{
    EXPECT_EQ(firstCodePoints("aé€😀b", 3), "aé€");
    EXPECT_EQ(firstCodePoints("aé€😀b", 4), "aé€😀");
    EXPECT_EQ(firstCodePoints("aé", 9), "aé");
    EXPECT_EQ(firstCodePoints("aé", 0), "");
}

TEST(TextTest, ReadsOnlyWholeIntegers)
{
    const std::vector<std::pair<std::string, std::optional<std::int64_t>>> cases{
        {"0", 0},
        {"-7", -7},
        {"+7", 7},
        {"007", 7},
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775808", std::nullopt},
        {"", std::nullopt},
        {"+", std::nullopt},
        {"-", std::nullopt},
        {"+-5", std::nullopt},
        {"--5", std::nullopt},
        {" 5", std::nullopt},
        {"5 ", std::nullopt},
        {"5.0", std::nullopt},
        {"0x5", std::nullopt},
        {"٣", std::nullopt},
        {"5\0"s, std::nullopt},
    };
    for (const auto& [text, number] : cases)
        EXPECT_EQ(strictInteger(text), number) << text;
}

TEST(TextTest, PercentEncodesForItsPlace)
{
    EXPECT_EQ(percentEncodedForQuery("a b&c=d/?#%\"é"), "a%20b&c=d/?%23%25%22%C3%A9");
    EXPECT_EQ(percentEncodedComponent("a b&c=d/?#%+~\0"s), "a%20b%26c%3Dd%2F%3F%23%25%2B~%00");
}

TEST(TextTest, MakesTitlesHarmless)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"a\nb\tc\x7F\u0085\0d"s, "abcd"},
        {"\u202Etxt.exe\u2066\u2069\u200F\u061C", "txt.exe"},
        {"a\xFFz", "a\uFFFDz"},
        {"👩\u200D💻", "👩\u200D💻"}, // a joiner is part of the picture
        {std::string(301, 'x'), std::string(300, 'x')},
    };
    for (const auto& [title, safe] : cases)
        EXPECT_EQ(safeTitle(title), safe);
    std::string euros;
    for (int i = 0; i < 400; ++i)
        euros += "€";
    EXPECT_EQ(safeTitle(euros).size(), 900U);
}

TEST(TextTest, DecodesWellFormedPercentEscapesOnce)
{
    const std::vector<std::pair<std::string_view, std::string_view>> cases{
        {"a%20b%2Fc%2f", "a b/c/"},
        {"%252F", "%2F"},
        {"%C3%A4", "ä"},
        {"%", "%"},
        {"%4", "%4"},
        {"%4g%g4%+1%-1% 1", "%4g%g4%+1%-1% 1"},
        {"", ""},
        {"%00", std::string_view("\0", 1)},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(percentDecoded(text), expected) << text;
}

} // namespace
} // namespace corvane
