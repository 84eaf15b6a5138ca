#include "notifications/PendingNotification.h"

#include "support/JsonCorpus.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string answer(std::string_view elements)
{
    return fmt::format(R"({{"notifications":{}}})", elements);
}

TEST(PendingNotification, ReadsIntegersOfEveryForm)
{
    const auto pairs = parseJson(R"([[7, 7], [-7, -7], [3.9, 3], [-3.9, -3], [1e3, 1000], ["12", 12], ["+5", 5],
        ["-05", -5], [9223372036854775807, 9223372036854775807], [-9223372036854775808, -9223372036854775808],
        ["9223372036854775807", 9223372036854775807]])");
    for (const auto& pair : pairs.value())
        EXPECT_EQ(jsonInt(&pair[0]), pair[1].get<std::int64_t>()) << pair;

    const auto zeros =
        parseJson(R"([-0, 0.99, 9223372036854775808, 18446744073709551616, 9.3e18, -1e300, "", "+", "+-5",
        " 5", "5 ", "5.0", "5\u0000", "0x5", "٥", "9223372036854775808", null, true, [7], {"a": 7}])");
    for (const auto& value : zeros.value())
        EXPECT_EQ(jsonInt(&value), 0) << value;
    EXPECT_EQ(jsonInt(nullptr), 0);
}

TEST(PendingNotification, PrefersTheNewerNamesEvenWhenTheyHoldNothing)
{
    struct Case {
        std::string_view element;
        std::optional<PendingNotification> expected;
    };
    for (const auto& [element, expected] : std::vector<Case>{
             {R"({"recipient_id":"7","campaign_id":3,"title":"T"})", {{7, 3, "T", "", ""}}},
             {R"({"recipientId":1,"recipient_id":2,"campaignId":null,"campaign_id":4})", {{1, 0, "", "", ""}}},
             {R"({"recipientId":3.9,"title":null,"body":["b"],"url":5,"campaignId":-8})", {{3, -8, "", "", ""}}},
             {R"({"recipientId":"+5","body":"<b>\u0000</b>","url":"u"})",
              {{5, 0, "", std::string("<b>\0</b>", 8), "u"}}},
             {R"({"recipientId":null,"recipient_id":2})", std::nullopt},
             {R"({"recipientId":" 5"})", std::nullopt},
             {R"({"recipientId":-1})", std::nullopt},
             {R"({"recipientId":0.9})", std::nullopt},
             {R"({"RecipientId":5})", std::nullopt},
         })
        EXPECT_EQ(decodeNotification(*parseJson(element)), expected) << element;
}

TEST(PendingNotification, ListsTheLargestRecipientFirstAndKeepsEqualOnesInOrder)
{
    const auto pending = decodePending(answer(R"([{"recipient_id":"7","title":"a"},{"recipientId":12,"body":"b"},
        {"recipientId":0},{"recipientId":7,"title":"c"},{"recipientId":7,"title":"d"},{}])"));
    const std::vector<PendingNotification> expected{
        {12, 0, "", "b", ""}, {7, 0, "a", "", ""}, {7, 0, "c", "", ""}, {7, 0, "d", "", ""}};
    EXPECT_EQ(pending, expected);
}

TEST(PendingNotification, TellsMalformedAnswersFromThoseOfAnotherForm)
{
    for (const std::string_view text :
         {"[]", "7", "null", "{}", R"({"notifications":null})", R"({"notifications":{"a":{"recipientId":5}}})",
          R"({"notifications":[{"recipientId":5},7]})", R"({"notifications":[[],{"recipientId":5}]})"})
        EXPECT_EQ(decodePending(text), std::vector<PendingNotification>()) << text;
    const auto tooDeep = answer(std::string(100'000, '[') + std::string(100'000, ']'));
    for (const std::string_view text : {"", "{", "<html>", R"({"notifications":[]},)", tooDeep.c_str()})
        EXPECT_EQ(decodePending(text), std::nullopt) << text.substr(0, 40);
}

TEST(PendingNotification, SurvivesEveryDocumentOfTheParsingCorpus)
{
    const auto corpus = testing::jsonCorpus();
    if (corpus.empty())
        GTEST_SKIP() << "The JSON parsing corpus is not beside the checkout.";
    for (const auto& [name, bytes] : corpus) {
        EXPECT_EQ(decodePending(bytes).has_value(), parseJson(bytes).has_value()) << name;
        EXPECT_FALSE(name.starts_with("n_") && decodePending(bytes)) << name;
        const auto element = fmt::format(R"([{{"recipientId":1,"campaignId":{0},"title":{0},"url":{0}}}])", bytes);
        const auto pending = decodePending(answer(element));
        EXPECT_EQ(pending && pending->size() == 1, parseJson(element).has_value()) << name;
    }
}

} // namespace
} // namespace corvane
