#include "commands/CatalogueCommand.h"

#include "server/ServerWorld.h"

namespace corvane::server::testing {
namespace {

class CatalogueCommandTest : public ServerWorld {
protected:
    static constexpr const char* one = R"([{"service":"A","url":"http://127.0.0.1:3002/a","description":""}])";

    CatalogueCommandTest()
    {
        publish_.write("Corvane/sites/sites.json", "[]");
        publish_.write("Corvane/sites/whatsnew.html", "first");
    }

    std::string run(const std::string& catalogue, const std::string& notes = {})
    {
        data_.write("new.json", catalogue);
        data_.write("notes.html", notes);
        CommandLine line;
        line.argument = data_.path() / "new.json";
        line.publishFolder = publish_.path();
        if (!notes.empty())
            line.notesFile = data_.path() / "notes.html";
        const auto done = publishCatalogue(line, now());
        return done ? *done : "refused: " + done.error().message;
    }
};

TEST_F(CatalogueCommandTest, PublishesTheListAndKeepsEarlierNotesTheNewestFirst)
{
    EXPECT_EQ(run(one, "second"), "Published a catalogue of 1 service.\n");
    EXPECT_EQ(get("/Corvane/sites/sites.json").json()[0]["url"], origin() + "/a");
    EXPECT_EQ(run("[]", "third"), "Published a catalogue of 0 services.\n");
    EXPECT_EQ(run(R"({"source_url":"https://example.org/sites.json"})"),
              "Published a redirect to https://example.org/sites.json.\n");

    EXPECT_EQ(get("/Corvane/sites/whatsnew.html").body, "third") << "without new notes the old ones stay";
    const auto archives = get("/Corvane/sites/archive/index.json").json()["archives"];
    ASSERT_EQ(archives.size(), 2U);
    for (const auto& [entry, page] : {std::pair{archives[0], "second"}, std::pair{archives[1], "first"}}) {
        EXPECT_EQ(entry["title"], "Service list until Nov 14, 2023");
        EXPECT_EQ(get("/Corvane/sites/archive/" + entry.value("file", "")).body, page);
    }
}

TEST_F(CatalogueCommandTest, BadInputChangesNothing)
{
    const auto before = publish_.snapshot();
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "is empty"},
        {"[", "not JSON"},
        {"1", "neither"},
        {"{}", "neither"},
        {R"({"source_url":""})", "neither"},
        {R"({"source_url":"file:///etc"})", "neither"},
        {"[1]", "entry 1: it has no text \"service\""},
        {R"([{"service":"A","url":"http://a/"}])", "no text \"description\""},
        {R"([{"service":"A","url":null,"description":""}])", "no text \"url\""},
        {R"([{"service":" ","url":"http://a/","description":""}])", "is empty"},
        {R"([{"service":"A","url":"javascript:1","description":""}])", "not an http"},
        {R"([{"service":"A","url":"http://a b/","description":""}])", "not an http"},
        {R"([{"service":"A","url":"http://a/","description":""},{"service":"A","url":"http://b/","description":""}])",
         "entry 2: there is a service \"A\" before it"},
        {std::string(600, '['), "not JSON"},
        {"[]\xFF", "not UTF-8"}};
    for (const auto& [text, reason] : cases) {
        const auto said = run(text, "new notes");
        EXPECT_TRUE(said.starts_with("refused: ") && said.contains(reason)) << text.substr(0, 90) << ": " << said;
        EXPECT_TRUE(publish_.snapshot() == before) << text.substr(0, 90);
    }
    EXPECT_TRUE(run(one, "\xFF").contains("not UTF-8"));
    EXPECT_TRUE(publish_.snapshot() == before);
}

} // namespace
} // namespace corvane::server::testing
