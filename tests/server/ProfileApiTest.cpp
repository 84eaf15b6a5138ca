#include "server/ServerWorld.h"
#include "store/ProfileStore.h"

namespace corvane::server::testing {
namespace {

class ProfileApiTest : public ServerWorld {};

TEST_F(ProfileApiTest, ABrowserSeesItsOwnProfileAndNoOther)
{
    registerDevice();
    const auto owner = makeProfile("  Änne 🙂 ");
    bind(owner.bindingToken);

    const auto own = get("/api/profiles/me", owner.cookie).json();
    EXPECT_EQ(own["profile"]["name"], "Änne 🙂");
    EXPECT_EQ(own["profile"]["devices"], 1);
    for (const auto* stranger : {"corvane_profile=", "corvane_profile=0000", "other=1", ""})
        EXPECT_TRUE(get("/api/profiles/me", {{"Cookie", stranger}}).json()["profile"].is_null()) << stranger;
}

TEST_F(ProfileApiTest, TheSecretReachesNoScriptAndNoOtherSite)
{
    const auto reply = post("/api/profiles", {{"name", "Ada"}, {"email", "ada@example.org"}});
    const auto& cookie = reply.headers.at("set-cookie");
    for (const auto* attribute : {"; HttpOnly", "; SameSite=Strict", "; Path=/api/profiles"})
        EXPECT_NE(cookie.find(attribute), std::string::npos) << attribute;
    const auto secret = cookie.substr(cookie.find('=') + 1, 64);
    EXPECT_EQ(reply.body.find(secret), std::string::npos);
    EXPECT_EQ(reply.headers.at("cache-control"), "no-store");
}

TEST_F(ProfileApiTest, ABrowserMakesOneProfileAndAnotherAfterDeletingIt)
{
    const auto owner = makeProfile("Ada");
    EXPECT_EQ(post("/api/profiles", {{"name", "Bob"}}, owner.cookie).status, 409U);

    auto headers = owner.cookie;
    headers.emplace("Content-Type", "application/json");
    const auto deleted = send("DELETE", "/api/profiles/me", "{}", headers);
    EXPECT_EQ(deleted.status, 200U);
    EXPECT_NE(deleted.headers.at("set-cookie").find("Max-Age=0"), std::string::npos);
    EXPECT_EQ(send("DELETE", "/api/profiles/me", "{}", headers).status, 401U);
    EXPECT_EQ(post("/api/profiles/me/bind", Json::object(), owner.cookie).status, 401U);
    EXPECT_EQ(post("/api/profiles", {{"name", "Bob"}}, owner.cookie).status, 201U);
}

TEST_F(ProfileApiTest, DeletingAProfileMakesItsTokensUseless)
{
    registerDevice();
    const auto owner = makeProfile("Ada");
    auto headers = owner.cookie;
    headers.emplace("Content-Type", "application/json");
    ASSERT_EQ(send("DELETE", "/api/profiles/me", "{}", headers).status, 200U);
    EXPECT_EQ(bind(owner.bindingToken).status, 403U);
}

TEST_F(ProfileApiTest, OnlyOwnPagesWithJsonMayChangeSomething)
{
    const auto owner = makeProfile("Ada");
    struct Case {
        const char* name;
        Headers headers;
        unsigned status;
    };
    const auto port = origin().substr(origin().rfind(':'));
    const std::vector<Case> cases{
        {"another site", {{"Content-Type", "application/json"}, {"Origin", "http://evil.example"}}, 403},
        {"another port", {{"Content-Type", "application/json"}, {"Origin", "http://127.0.0.1:1"}}, 403},
        {"no origin at all", {{"Content-Type", "application/json"}, {"Origin", "null"}}, 403},
        {"a plain form", {{"Content-Type", "text/plain"}, {"Origin", origin()}}, 415},
        {"no type", {{"Origin", origin()}}, 415},
        {"a foreign name", {{"Content-Type", "application/json"}, {"Host", "evil.example" + port}}, 421},
        {"the page", {{"Content-Type", "application/json; charset=utf-8"}, {"Origin", origin()}}, 200},
        {"the page by its other name",
         {{"Content-Type", "application/json"}, {"Host", "LOCALHOST" + port}, {"Origin", "http://localhost" + port}},
         200},
    };
    for (auto one : cases) {
        one.headers.merge(Headers(owner.cookie));
        EXPECT_EQ(send("POST", "/api/profiles/me/bind", "{}", one.headers).status, one.status) << one.name;
    }
    EXPECT_EQ(send("OPTIONS", "/api/profiles", {}, {{"Origin", "http://evil.example"}}).status, 405U);
}

TEST_F(ProfileApiTest, TheRegistrationPageMayLoadOnlyItselfAndStandInNoFrame)
{
    for (const auto& [path, type] : std::map<std::string, std::string>{{"/registration.html?os=macos", "text/html"},
                                                                       {"/registration.css", "text/css"},
                                                                       {"/registration.js", "text/javascript"}}) {
        const auto reply = get(path);
        EXPECT_EQ(reply.status, 200U) << path;
        EXPECT_TRUE(reply.headers.at("content-type").starts_with(type)) << path;
        const auto& policy = reply.headers.at("content-security-policy");
        for (const auto* rule : {"default-src 'none'", "script-src 'self'", "frame-ancestors 'none'"})
            EXPECT_NE(policy.find(rule), std::string::npos) << rule;
        EXPECT_EQ(policy.find("unsafe"), std::string::npos);
    }
    EXPECT_EQ(get("/registration.html").body.find("<script>"), std::string::npos);
}

} // namespace
} // namespace corvane::server::testing
