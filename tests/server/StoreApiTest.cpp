#include "commands/StoreVersionCommand.h"
#include "server/ServerWorld.h"

namespace corvane::server::testing {
namespace {

class StoreApiTest : public ServerWorld {
protected:
    bool set(const std::string& version)
    {
        CommandLine line;
        line.publishFolder = publish_.path();
        line.argument = version;
        return setStoreVersion(line).has_value();
    }

    std::string lookUp(const std::string& query = "?id=0000000000&country=us") { return get("/lookup" + query).body; }

    static constexpr const char* nothing = "{\"resultCount\":0,\"results\":[]}";
    static constexpr const char* found = "{\"resultCount\":1,\"results\":[{\"version\":\"0.76.0\"}]}";
};

TEST_F(StoreApiTest, AnswersWithTheVersionThatTheCommandSet)
{
    EXPECT_EQ(lookUp(), nothing);
    EXPECT_TRUE(set("0.76.0"));
    EXPECT_EQ(lookUp(), found);
    for (const auto* wrong : {"soon", "1.x", "-1", "", "None"})
        EXPECT_FALSE(set(wrong)) << wrong;
    EXPECT_EQ(lookUp(), found);
    EXPECT_TRUE(set("none"));
    EXPECT_EQ(lookUp(), nothing);
}

TEST_F(StoreApiTest, AnUnreadableVersionIsNoResultAndAnUnclearQuestionIsRefused)
{
    for (const auto* text : {"", "{", "[]", "{\"version\":1}", "{\"version\":\"\"}"}) {
        publish_.write("store/version.json", text);
        EXPECT_EQ(lookUp(), nothing) << text;
    }
    for (const auto* query : {"", "?id=", "?id=x", "?id=1&id=2", "?country=us"})
        EXPECT_EQ(get(std::string("/lookup") + query).status, 400U) << query;
}

} // namespace
} // namespace corvane::server::testing
