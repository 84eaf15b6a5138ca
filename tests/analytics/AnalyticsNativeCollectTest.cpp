#include "analytics/AnalyticsNativeCollect.h"

#include "analytics/AnalyticsWorld.h"

#include <cmath>
#include <limits>

namespace corvane {
namespace {

class AnalyticsNativeCollectTest : public AnalyticsWorld {
protected:
    /// What follows the language in the query of an event with these parameters.
    std::string sentParameters(const AnalyticsParams& params)
    {
        collect->sendEvent("e", params, "c", "1");
        queue.runAll();
        const std::string query(http.requests().back().url.query());
        return query.substr(query.find("&up.app_version=1") + std::string("&up.app_version=1").size());
    }

    std::shared_ptr<AnalyticsNativeCollect> collect = makeNativeCollect();
};

TEST_F(AnalyticsNativeCollectTest, SendsAnEventAsOneRequestWithEverythingInItsQuery)
{
    host.locale = "de_CH";
    collect = makeNativeCollect();
    collect->sendEvent("app_end", {{"session_duration_seconds", std::int64_t{42}}, {"event_category", "application"}},
                       "10.20_rel", "1.2.0");
    EXPECT_TRUE(http.requests().empty()); // not before the main thread's next turn
    queue.runAll();
    ASSERT_EQ(http.requests().size(), 1U);
    const auto& request = http.requests()[0];
    EXPECT_EQ(request.url.text(), "https://collect.test/g/collect?v=2&tid=G-A1B2C3D4E5&cid=10.20_rel&en=app_end"
                                  "&sid=1700000000&sct=1&seg=1&_s=1&ul=de-ch&up.app_version=1.2.0"
                                  "&ep.event_category=application&ep.session_duration_seconds=42");
    EXPECT_EQ(request.method, HttpMethod::post);
    EXPECT_EQ(request.headers, (std::vector<std::pair<std::string, std::string>>{{"Content-Type", "text/plain"}}));
    EXPECT_EQ(request.body, "");
}

TEST_F(AnalyticsNativeCollectTest, WritesEveryKindOfValueSoThatNoReaderTakesItForAnotherOne)
{
    struct Case {
        AnalyticsParams params;
        std::string sent;
    };
    for (const auto& [params, sent] : std::vector<Case>{
             {{}, ""},
             {{{"k", "a+b c&d=e;f#g/h?i%20"}}, "&ep.k=a%2Bb%20c%26d%3De%3Bf%23g%2Fh%3Fi%2520"},
             {{{"k", "ü\u2028\"<'>"}}, "&ep.k=%C3%BC%E2%80%A8%22%3C%27%3E"},
             {{{"k", std::string("\0\n", 2)}}, "&ep.k=%00%0A"},
             {{{"k", "\xFF"}}, "&ep.k=%EF%BF%BD"}, // not UTF-8
             {{{"k&=", ""}}, "&ep.k%26%3D="},
             {{{"a", std::numeric_limits<std::int64_t>::min()}, {"b", std::int64_t{0}}},
              "&ep.a=-9223372036854775808&ep.b=0"},
             {{{"a", 2.0}, {"b", 0.1}, {"c", -1e-7}, {"d", 1e16}}, "&ep.a=2.0&ep.b=0.1&ep.c=-1e-07&ep.d=1e%2B16"},
             {{{"a", std::nan("")}, {"b", -HUGE_VAL}}, "&ep.a=nan&ep.b=-inf"},
             {{{"a", true}, {"b", false}}, "&ep.a=1&ep.b=0"},
         })
        EXPECT_EQ(sentParameters(params), sent);
}

TEST_F(AnalyticsNativeCollectTest, CountsItsRequestsFromOneInASessionThatBeginsWithTheFirst)
{
    clock.advance(std::chrono::milliseconds(9999));
    http.respond = [](const HttpRequest&) { return std::unexpected(Error{"down"}); };
    for (const auto* number : {"1", "2", "3"}) {
        collect->sendEvent("e", {}, "c", "1");
        queue.runAll();
        EXPECT_TRUE(
            http.requests().back().url.query().contains("&sid=1700000000&sct=1&seg=1&_s=" + std::string(number)));
    }
    makeNativeCollect()->sendEvent("e", {}, "c", "1"); // gone before its turn comes
    queue.runAll();
    EXPECT_EQ(http.requests().size(), 3U);
    collect = makeNativeCollect();
    collect->sendEvent("e", {}, "c", "1");
    queue.runAll();
    EXPECT_TRUE(http.requests().back().url.query().contains("&sid=1700000009&sct=1&seg=1&_s=1&"));
}

TEST_F(AnalyticsNativeCollectTest, PutsItsOwnQueryInThePlaceOfTheEndpointsAndEndsWithItsOwner)
{
    endpoints.collect = Url::parse("https://collect.test/g/collect?old=1#top").value();
    collect = makeNativeCollect();
    collect->sendEvent("e", {}, "c", "1");
    queue.runAll();
    EXPECT_TRUE(http.requests().back().url.text().starts_with("https://collect.test/g/collect?v=2&"));
    EXPECT_FALSE(http.requests().back().url.text().contains('#'));
    EXPECT_EQ(http.waiting(), 1U);
    collect.reset();
    EXPECT_EQ(http.waiting(), 0U);
}

} // namespace
} // namespace corvane
