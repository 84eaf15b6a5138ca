#include "server/ServerWorld.h"

namespace corvane::server::testing {
namespace {

class HttpServerTest : public ServerWorld {};

TEST_F(HttpServerTest, SaysThatAPortIsTaken)
{
    HttpServer second([](const HttpRequest&) { return HttpAnswer(); });
    const auto port = static_cast<std::uint16_t>(std::stoi(origin().substr(origin().rfind(':') + 1)));
    const auto refused = second.listen(port);
    ASSERT_FALSE(refused);
    EXPECT_NE(refused.error().message.find(std::to_string(port)), std::string::npos);
}

TEST_F(HttpServerTest, AFailingDatabaseIsAnswered)
{
    database_.run("DROP TABLE recipients");
    const auto reply = get(std::string("/api/notifications/pending?installId=") + installId);
    EXPECT_EQ(reply.status, 500U);
    EXPECT_EQ(reply.error(), "internal");
    EXPECT_EQ(reply.body.find("recipients"), std::string::npos) << "its inside is nobody's business";
    registerDevice();
}

TEST_F(HttpServerTest, KnowsItselfByTheNameOfItsProxy)
{
    ReferenceServer proxied(Database::inMemory(), publish_.path(), now());
    address_ = proxied.listen(0, Url::parse("https://corvane.example:3002")).value();
    const Headers headers{{"Host", "corvane.example:3002"}, {"Origin", "https://corvane.example:3002"}};
    const auto made = post("/api/profiles", {{"name", "Ada"}}, headers);
    EXPECT_EQ(made.status, 201U);
    EXPECT_NE(made.headers.at("set-cookie").find("; Secure"), std::string::npos);

    publish_.write("list.json", "\"http://127.0.0.1:3002/x\"");
    EXPECT_EQ(get("/list.json").body, "\"https://corvane.example:3002/x\"");
}

} // namespace
} // namespace corvane::server::testing
