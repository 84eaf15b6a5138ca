#include "api/CollectRequest.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

const std::string common = "v=2&tid=G-A1B2C3D4E5&cid=1.2_rel&sid=1700000000&_s=3";

/// "name parameters properties" of every event, one after the other, or why there is none.
std::string outcome(const std::string& query, const std::string& body = {})
{
    const auto events = CollectRequest::read(query, body);
    if (!events)
        return "refused: " + events.error().message;
    std::string text;
    for (const auto& event : *events)
        text += fmt::format("{} {} {};", event.name, compactJson(event.parameters), compactJson(event.userProperties));
    return text;
}

TEST(CollectRequestTest, TakesTextsAndNumbersApart)
{
    const auto events = CollectRequest::read(common + "&en=app_end", "").value();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].measurementId, "G-A1B2C3D4E5");
    EXPECT_EQ(events[0].clientId, "1.2_rel");
    EXPECT_EQ(events[0].sessionId, 1'700'000'000);
    EXPECT_EQ(events[0].sequence, 3);

    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "e {} {};"},
        {"&ul=de-ch&sct=1&seg=1&_dbg=1&dl=http%3A%2F%2Fx%2F&ep&&up=1", "e {} {};"},
        {"&ep.seconds=42&epn.whole=42&epn.part=-2.5&epn.large=1e%2B21",
         R"(e {"large":1e+21,"part":-2.5,"seconds":"42","whole":42} {};)"},
        {"&up.app_version=0.75.0&upn.age=3", R"(e {} {"age":3,"app_version":"0.75.0"};)"},
        {"&ep.label=Gr%C3%BC%C3%9Fe%20a+b%26c%3Dd=e", R"(e {"label":"Grüße a+b&c=d=e"} {};)"},
        {"&ep.empty=&ep.none", R"(e {"empty":"","none":""} {};)"},
    };
    const auto start = common + "&en=e";
    for (const auto& [items, expected] : cases)
        EXPECT_EQ(outcome(start + items), expected) << items;
}

TEST(CollectRequestTest, AddsEachLineOfABodyToWhatTheQuerySays)
{
    EXPECT_EQ(outcome(common + "&up.v=1", "en=a&ep.n=1\r\nen=b&up.w=2\n\nen=c\n"),
              R"(a {"n":"1"} {"v":"1"};b {} {"v":"1","w":"2"};c {} {"v":"1"};)");
    EXPECT_EQ(outcome(common + "&en=a", "\n"), "a {} {};");
    std::string lines;
    for (std::size_t i = 0; i < CollectRequest::mostEvents; ++i)
        lines += "en=a\n";
    EXPECT_FALSE(outcome(common, lines).starts_with("refused"));
    EXPECT_TRUE(outcome(common, lines += "en=a").starts_with("refused"));
    EXPECT_TRUE(outcome(common + "&en=a", "en=b").starts_with("refused")) << "one event has two names";
    EXPECT_TRUE(outcome(common, "en=a\nep.x=1").starts_with("refused")) << "one event has no name";
}

TEST(CollectRequestTest, RefusesWhatIsNoEvent)
{
    const std::string good = common + "&en=e";
    const auto with = [&](const std::string& from, const std::string& to) {
        auto query = good;
        return query.replace(query.find(from), from.size(), to);
    };
    std::string many;
    for (std::size_t i = 0; i < CollectRequest::mostItems; ++i)
        many += fmt::format("&ep.p{}=1", i);
    const std::vector<std::string> cases{
        "", "v=2", "&&&", "=", "%", with("v=2", "v=1"), with("v=2", "v=2&v=2"),
        // Identifiers and numbers.
        with("G-A1B2C3D4E5", "G-A1B2C3D4E"), with("G-A1B2C3D4E5", "G-A1B2C3D4E56"),
        with("G-A1B2C3D4E5", "G-a1b2c3d4e5"), with("G-A1B2C3D4E5", "UA-12345678-"), with("cid=1.2_rel", "cid="),
        with("1.2_rel", "a%20b"), with("1.2_rel", std::string(CollectRequest::longestClient + 1, '1')),
        with("1700000000", "-1"), with("1700000000", "now"), with("1700000000", "9223372036854775808"),
        with("_s=3", "_s=0"), with("_s=3", ""),
        // Names.
        with("en=e", ""), with("en=e", "en="), with("en=e", "en=a%20b"), with("en=e", "en=%1B[2J"),
        with("en=e", "en=" + std::string(CollectRequest::longestName + 1, 'e')), good + "&ep.=1", good + "&ep.a%20b=1",
        good + "&up.%C3%BC=1", good + "&ep." + std::string(CollectRequest::longestName + 1, 'e') + "=1",
        // Values.
        good + "&ep.a=%FF", good + "&ep.a=%00", good + "&ep.a=%4", good + "&epn.a=", good + "&epn.a=1x",
        good + "&epn.a=nan", good + "&epn.a=1e999", good + "&upn.a=%20%31",
        // Too much.
        good + "&ep.a=1&ep.a=2", good + "&ep.a=1&epn.a=2", good + many,
        good + "&ep.a=" + std::string(CollectRequest::longest, 'x')};
    for (const auto& query : cases)
        EXPECT_TRUE(outcome(query).starts_with("refused")) << query.substr(0, 200);
}

} // namespace
} // namespace corvane::server::testing
