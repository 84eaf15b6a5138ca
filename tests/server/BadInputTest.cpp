#include "data/Statement.h"
#include "server/ServerWorld.h"

#include <fmt/format.h>

namespace corvane::server::testing {
namespace {

class BadInputTest : public ServerWorld {
protected:
    // Every row of every table, in one line.
    std::string everything()
    {
        std::string text;
        for (const auto* table : {"profiles", "binding_tokens", "devices", "campaigns", "recipients"}) {
            Statement rows(database_, std::string("SELECT * FROM ") + table);
            while (rows.step()) {
                for (int column = 0; column < 4; ++column)
                    text += rows.text(column) + "|";
            }
        }
        return text;
    }
};

struct Case {
    const char* path;
    std::string body;
};

std::string registration(const std::string& member, const std::string& value)
{
    std::map<std::string, std::string> members{{"installId", "\"0c7d3d3e-5b0a-4a6e-9f3c-1a2b3c4d5e6f\""},
                                               {"platform", "\"macos\""},
                                               {"product", "\"corvane\""},
                                               {"appVersion", "\"9.9\""}};
    members[member] = value;
    std::string body;
    for (const auto& [name, text] : members)
        body += fmt::format("{}\"{}\":{}", body.empty() ? "{" : ",", name, text);
    return body + "}";
}

std::vector<Case> badBodies()
{
    const std::string id = "\"installId\":\"0c7d3d3e-5b0a-4a6e-9f3c-1a2b3c4d5e6f\"";
    std::vector<Case> cases;
    for (const auto* path : {"/api/devices/register", "/api/devices/bind", "/api/notifications/ack", "/api/profiles"}) {
        for (const auto* body : {"", "{", "[]", "null", "\"x\"", "{}", "{}{}", "{\"name\":\"\xFF\"}", "\xEF\xBB\xBF"})
            cases.push_back({path, body});
        cases.push_back({path, std::string(1000, '[')});
        cases.push_back({path, "{\"name\":" + std::string(20, '[') + std::string(20, ']') + "}"});
    }
    for (const auto* value : {"null", "7", "{}", "\"\"", "\"0c7d3d3e5b0a4a6e9f3c1a2b3c4d5e6f0000\"",
                              "\"0c7d3d3e-5b0a-4a6e-9f3c-1a2b3c4d5e6g\"", "\"../../etc/passwd\""})
        cases.push_back({"/api/devices/register", registration("installId", value)});
    for (const auto* value : {"[]", "\"\"", "\"mac os\"", "\"mac\\u0000os\"", "\"\\u00e9\""})
        cases.push_back({"/api/devices/register", registration("platform", value)});
    cases.push_back({"/api/devices/register", registration("product", "\"other\"")});
    cases.push_back({"/api/devices/register", registration("appVersion", "1.0")});
    cases.push_back({"/api/devices/register", registration("appVersion", "\"" + std::string(65, '1') + "\"")});
    for (const auto* token : {"7", "null", "\"\"", "\"a b\"", "\"a\\nb\""})
        cases.push_back(
            {"/api/devices/bind", fmt::format("{{{},\"platform\":\"macos\",\"bindingToken\":{}}}", id, token)});
    for (const auto* ids :
         {"1", "{}", "[]", "[0]", "[-1]", "[1.0]", "[\"1\"]", "[1,null]", "[9223372036854775808]", "[1e300]"})
        cases.push_back({"/api/notifications/ack", fmt::format("{{{},\"recipientIds\":{}}}", id, ids)});
    std::string many = "1";
    for (int i = 0; i < 1000; ++i)
        many += ",1";
    cases.push_back({"/api/notifications/ack", fmt::format("{{{},\"recipientIds\":[{}]}}", id, many)});
    for (const std::string name : {"\"\"", "\" \\n \"", "3", "\"a\\u0000b\"", "\"a\\u202Eb\"", "\"\\ud800\""})
        cases.push_back({"/api/profiles", "{\"name\":" + name + "}"});
    cases.push_back({"/api/profiles", "{\"name\":\"" + std::string(81, 'x') + "\"}"});
    for (const auto* email : {"5", "\"x\"", "\"@x\"", "\"x@\"", "\"a@b@c\"", "\"a b@c\"", "\"a@b\\u0007c\""})
        cases.push_back({"/api/profiles", fmt::format("{{\"name\":\"Ada\",\"email\":{}}}", email)});
    return cases;
}

TEST_F(BadInputTest, IsRefusedWithAReasonAndChangesNothing)
{
    registerDevice();
    const auto before = everything();
    ASSERT_NE(before, "");
    for (const auto& one : badBodies()) {
        const auto reply = send("POST", one.path, one.body, {{"Content-Type", "application/json"}});
        EXPECT_EQ(reply.status, 400U) << one.path << " " << one.body.substr(0, 120);
        EXPECT_NE(reply.error(), "") << one.path;
        EXPECT_TRUE(reply.json().value("message", Json()).is_string()) << one.path;
    }
    EXPECT_EQ(everything(), before);
}

TEST_F(BadInputTest, APendingQueryNamesExactlyOneInstall)
{
    const std::string id = installId;
    const std::vector<std::string> queries{"",
                                           "?installId",
                                           "?installId=",
                                           "?installId=%00",
                                           "?installId=" + id + "x",
                                           "?installId=" + id + "&installId=" + id,
                                           "?InstallId=" + id};
    for (const auto& query : queries)
        EXPECT_EQ(get("/api/notifications/pending" + query).status, 400U) << query;
    EXPECT_EQ(get("/api/notifications/pending?x=1&installId=%30" + id.substr(1)).body, "{\"notifications\":[]}");
}

TEST_F(BadInputTest, AWrongMethodIsToldTheRightOnes)
{
    const std::map<std::string, std::string> allowed{{"/api/devices/register", "POST"},
                                                     {"/api/notifications/pending", "GET, HEAD"},
                                                     {"/api/profiles/me", "DELETE, GET, HEAD"},
                                                     {"/g/collect", "GET, HEAD, POST"},
                                                     {"/registration.html", "GET, HEAD"}};
    for (const auto& [path, methods] : allowed) {
        const auto reply = send("PUT", path, "{}", {{"Content-Type", "application/json"}});
        EXPECT_EQ(reply.status, 405U) << path;
        EXPECT_EQ(reply.headers.at("allow"), methods) << path;
    }
    EXPECT_EQ(send("POST", "/api/nothing", "{}").status, 404U);
}

TEST_F(BadInputTest, ABodyEndsAtSixtyFourKibibytes)
{
    const std::string start = "{\"name\":\"Ada\",\"more\":\"", end = "\"}";
    const auto body = [&](std::size_t size) {
        return start + std::string(size - start.size() - end.size(), 'x') + end;
    };
    const Headers json{{"Content-Type", "application/json"}};
    EXPECT_EQ(send("POST", "/api/profiles", body(HttpServer::longestBody), json).status, 201U);
    EXPECT_EQ(send("POST", "/api/profiles", body(HttpServer::longestBody + 1), json).status, 413U);
}

} // namespace
} // namespace corvane::server::testing
