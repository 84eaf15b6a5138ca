#include "server/ServerWorld.h"
#include "store/EventStore.h"

namespace corvane::server::testing {
namespace {

const std::string collect = "/g/collect?v=2&tid=G-A1B2C3D4E5&cid=1.2_rel&sid=1700000000&_s=";

class CollectApiTest : public ServerWorld {
protected:
    std::vector<UsageEvent> collected() { return EventStore(database_).all(); }
};

TEST_F(CollectApiTest, KeepsEveryEventInTheOrderOfArrival)
{
    const Headers headers{{"Content-Type", "text/plain"}, {"User-Agent", "Corvane \xFFtest"}};
    const auto first = send("POST", collect + "1&en=app_start&up.app_version=0.75.0", {}, headers);
    EXPECT_EQ(first.status, 204U) << first.body;
    EXPECT_EQ(first.body, "");
    EXPECT_EQ(first.headers.at("cache-control"), "no-store");
    EXPECT_FALSE(first.headers.contains("content-length"));
    EXPECT_FALSE(first.headers.contains("set-cookie"));
    clock_.advance(std::chrono::minutes(1));
    EXPECT_EQ(get(collect + "2&en=menu_open").status, 204U);
    EXPECT_EQ(send("POST", collect + "3", "en=menu_click&ep.event_label=Help\nen=app_end&epn.seconds=9").status, 204U);

    const auto events = collected();
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].name, "app_start");
    EXPECT_EQ(events[0].userProperties.value("app_version", ""), "0.75.0");
    EXPECT_EQ(events[0].userAgent, "Corvane \uFFFDtest");
    EXPECT_EQ(events[1].name, "menu_open");
    EXPECT_EQ(events[1].sequence, 2);
    EXPECT_EQ(events[1].receivedAt - events[0].receivedAt, std::chrono::minutes(1));
    EXPECT_EQ(events[2].parameters.value("event_label", ""), "Help");
    EXPECT_EQ(events[3].parameters.value("seconds", 0), 9);
}

TEST_F(CollectApiTest, KeepsNothingOfWhatItRefuses)
{
    EXPECT_EQ(send("POST", collect + "1").status, 400U);
    EXPECT_EQ(send("POST", collect + "1", "en=good\nep.without=name").error(), "bad_event");
    EXPECT_EQ(send("POST", collect + "1", "en=a&ep.x=" + std::string(HttpServer::longestBody - 20, 'x')).status, 400U);
    EXPECT_EQ(send("POST", collect + "1", std::string(HttpServer::longestBody + 1, 'x')).status, 413U);
    EXPECT_EQ(get(collect + "1&en=a", {{"Host", "evil.example"}}).status, 421U);
    EXPECT_EQ(send("HEAD", collect + "1&en=a").status, 204U) << "it only asks";
    EXPECT_TRUE(collected().empty());
}

TEST_F(CollectApiTest, OnlyTheTagAndTheCollectAddressAreThereForOtherOrigins)
{
    const std::string tag = "/gtag/js?id=G-A1B2C3D4E5", pending = "/api/notifications/pending?installId=";
    for (const auto* origin : {"http://127.0.0.1:1", "corvane-analytics://127.0.0.1", "null", "https://evil.example"}) {
        const Headers headers{{"Origin", origin}, {"Content-Type", "text/plain"}};
        for (const auto& reply : {get(tag, headers), get(collect + "1&en=a", headers), get(collect + "1", headers),
                                  send("POST", collect + "1&en=a", {}, headers)}) {
            EXPECT_EQ(reply.headers.at("access-control-allow-origin"), "*") << origin;
            EXPECT_EQ(reply.headers.at("timing-allow-origin"), "*") << origin;
            EXPECT_FALSE(reply.headers.contains("access-control-allow-credentials"));
        }
        for (const auto& reply :
             {get("/registration.html", headers), get("/api/profiles/me", headers), get(pending + installId, headers),
              get("/lookup?id=1", headers), get("/", headers), get("/g/other", headers),
              send("POST", "/api/profiles", "{}", headers), send("OPTIONS", "/g/collect", {}, headers)})
            EXPECT_FALSE(reply.headers.contains("access-control-allow-origin")) << origin;
    }
}

TEST_F(CollectApiTest, GivesTheTagToWhoNamesAMeasurementIdentifier)
{
    const auto tag = get("/gtag/js?id=G-A1B2C3D4E5");
    EXPECT_EQ(tag.status, 200U);
    EXPECT_TRUE(tag.headers.at("content-type").starts_with("text/javascript"));
    EXPECT_NE(tag.body.find("\"/g/collect\""), std::string::npos);
    for (const auto* query : {"", "?id=", "?id=G-1", "?id=UA-1234567-8", "?id=G-A1B2C3D4E5&id=G-A1B2C3D4E5"})
        EXPECT_EQ(get(std::string("/gtag/js") + query).status, 400U) << query;
}

} // namespace
} // namespace corvane::server::testing
