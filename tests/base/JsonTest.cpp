#include "base/Json.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string nested(std::size_t depth, char open, char close)
{
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += open == '{' ? std::string(R"({"a":)") : std::string(1, open);
    return text + "1" + std::string(depth, close);
}

TEST(JsonTest, ReadsToTheDeepestLevelAndNoFurther)
{
    EXPECT_TRUE(parseJson(nested(512, '[', ']')));
    EXPECT_FALSE(parseJson(nested(513, '[', ']')));
    EXPECT_TRUE(parseJson(nested(512, '{', '}')));
    EXPECT_FALSE(parseJson(nested(513, '{', '}')));
    EXPECT_FALSE(parseJson(nested(3, '[', ']'), 2));
    EXPECT_FALSE(parseJson(std::string(1'000'000, '[')));
    EXPECT_TRUE(parseJson("[[],[],[],[]]", 2)) << "width is not depth";
    EXPECT_TRUE(parseJson(R"(["[[[[\"[[[[\\"])", 1)) << "brackets in text are not depth";
    EXPECT_FALSE(parseJson(R"("\)", 1));
}

TEST(JsonTest, ReadsNoMoreValuesThanFitTheMemory)
{
    const auto list = [](std::size_t count) {
        std::string text = "[";
        for (std::size_t i = 1; i < count; ++i)
            text += "0,";
        return text + "0]";
    };
    EXPECT_TRUE(parseJson(list(99'998)));
    EXPECT_FALSE(parseJson(list(100'000)));
    EXPECT_FALSE(parseJson("[" + std::string(400'000, '[') + std::string(400'000, ']') + "]", 500'000));
    EXPECT_TRUE(parseJson("[\"" + std::string(200'000, ',') + "\"]")) << "commas in text are no values";
}

TEST(JsonTest, AgreesWithThePublicConformanceCases)
{
    const auto folder = std::filesystem::path(CORVANE_SOURCE_DIR) / "../shared/corpora/json-parsing";
    if (!std::filesystem::exists(folder))
        GTEST_SKIP() << "the collection of JSON texts is not there";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto name = entry.path().filename().string();
        std::ifstream input(entry.path(), std::ios::binary);
        const auto document = parseJson(std::string(std::istreambuf_iterator(input), {}));
        if (name.starts_with("y_"))
            EXPECT_TRUE(document) << name;
        if (name.starts_with("n_"))
            EXPECT_FALSE(document) << name;
    }
}

TEST(JsonTest, ConvertsNumbersOnlyWithinRange)
{
    const std::vector<std::pair<const char*, std::optional<std::int64_t>>> cases{
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775808", std::nullopt},
        {"18446744073709551615", std::nullopt},
        {"1e400", std::nullopt},
        {"9.3e18", std::nullopt},
        {"-9.223372036854775808e18", INT64_MIN},
        {"-9.3e18", std::nullopt},
        {"1.99", 1},
        {"-1.99", -1},
        {"-0.0", 0},
        {"\"1\"", std::nullopt},
        {"true", std::nullopt},
        {"null", std::nullopt},
    };
    for (const auto& [text, number] : cases) {
        const auto document = parseJson(text);
        EXPECT_EQ(document ? integerOf(*document) : std::nullopt, number) << text;
    }
    EXPECT_EQ(integerOf(Json(std::numeric_limits<double>::quiet_NaN())), std::nullopt);
}

TEST(JsonTest, FindsMembersOfObjectsAndTextOfStringsOnly)
{
    const auto document = parseJson(R"({"a":"x\u0000y","b":1,"c":["a"]})");
    ASSERT_TRUE(document);
    ASSERT_NE(textOf(member(*document, "a")), nullptr);
    EXPECT_EQ(*textOf(member(*document, "a")), std::string("x\0y", 3));
    EXPECT_EQ(textOf(member(*document, "b")), nullptr);
    EXPECT_EQ(member(*document, "z"), nullptr);
    EXPECT_EQ(member(*member(*document, "c"), "a"), nullptr);
    EXPECT_EQ(textOf(nullptr), nullptr);
}

} // namespace
} // namespace corvane
