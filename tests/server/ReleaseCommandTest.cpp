#include "commands/ReleaseCommand.h"

#include "server/ServerWorld.h"

#include <glib.h>

namespace corvane::server::testing {
namespace {

class ReleaseCommandTest : public ServerWorld {
protected:
    static constexpr const char* folder = "/Corvane/mac_whatsnew/";

    ReleaseCommandTest()
    {
        publish_.write("Corvane/mac_whatsnew/whatsnew.html", "<h2>{{VERSION}} of {{BUILD_DATE}}</h2>");
        publish_.write("Corvane/mac_whatsnew/version.json", R"({"version": "0.75.0", "released": "Aug 12, 2026"})");
        publish_.write("Corvane/mac_whatsnew/Previous_Releases/index.json",
                       R"({"archives": [{"file": "old.html", "title": "Old"}], "kept": true})");
        data_.write("notes.html", "<h2>New {{VERSION}}</h2>");
        data_.write("image.dmg", "an image");
    }

    CommandLine lineFor(const std::string& version) const
    {
        CommandLine line;
        line.argument = version;
        line.publishFolder = publish_.path();
        line.notesFile = data_.path() / "notes.html";
        return line;
    }

    // What was done, or why nothing was.
    std::string run(const CommandLine& line)
    {
        const auto done = release(line, now());
        return done ? *done : "refused: " + done.error().message;
    }

    std::string published(const std::string& name) { return get(folder + name).body; }
};

TEST_F(ReleaseCommandTest, AnApplicationFindsTheVersionItsNotesAndAnImageThatFitsItsHash)
{
    auto line = lineFor("0.76.0");
    line.imageSize = 100'000;
    EXPECT_TRUE(run(line).starts_with("Published version 0.76.0 after 0.75.0.\n"));

    const auto version = get(std::string(folder) + "version.json").json();
    EXPECT_EQ(version["version"], "0.76.0");
    EXPECT_EQ(version["downloadURL"], origin() + "/download/Corvane-0.76.0.dmg");
    const auto image = get("/download/Corvane-0.76.0.dmg").body;
    EXPECT_EQ(image.size(), 100'000U);
    g_autofree char* sum =
        g_compute_checksum_for_string(G_CHECKSUM_SHA256, image.data(), static_cast<gssize>(image.size()));
    EXPECT_EQ(version["sha256"], sum);
    EXPECT_EQ(published("whatsnew.html"), "<h2>New {{VERSION}}</h2>") << "an application fills it in";
}

TEST_F(ReleaseCommandTest, TheNotesBeforeBecomeTheNewestOfTheArchive)
{
    run(lineFor("0.76.0"));
    auto line = lineFor("0.100");
    line.imageFile = data_.path() / "image.dmg";
    run(line);

    const auto index = get(std::string(folder) + "Previous_Releases/index.json").json();
    const auto entry = [](const char* file, const char* title) { return Json{{"file", file}, {"title", title}}; };
    EXPECT_EQ(index["archives"], (Json::array({entry("whatsnew_0.76.0.html", "Corvane 0.76.0 (Nov 14, 2023)"),
                                               entry("whatsnew_0.75.0.html", "Corvane 0.75.0 (Aug 12, 2026)"),
                                               entry("old.html", "Old")})));
    EXPECT_EQ(index["kept"], true);
    EXPECT_EQ(published("Previous_Releases/whatsnew_0.75.0.html"), "<h2>0.75.0 of Aug 12, 2026</h2>");
    EXPECT_EQ(published("Previous_Releases/whatsnew_0.76.0.html"), "<h2>New 0.76.0</h2>");
    EXPECT_EQ(get("/download/Corvane-0.100.dmg").body, "an image");
}

TEST_F(ReleaseCommandTest, BeginsInAnEmptyFolderAndMayHaveNoImage)
{
    const TemporaryFolder empty;
    auto line = lineFor("1.0");
    line.publishFolder = empty.path();
    EXPECT_TRUE(run(line).starts_with("Published version 1.0.\nIt has no image"));
    const auto all = empty.snapshot();
    EXPECT_EQ(all.at("Corvane/mac_whatsnew/version.json"),
              "{\n  \"released\": \"Nov 14, 2023\",\n  \"version\": \"1.0\"\n}\n");
    EXPECT_FALSE(all.contains("Corvane/mac_whatsnew/Previous_Releases"));
}

TEST_F(ReleaseCommandTest, BadInputChangesNothing)
{
    data_.write("empty", " \n");
    data_.write("latin", "caf\xE9");
    data_.write("long", std::string(4 * 1024 * 1024 + 1, 'x'));
    data_.write("void.dmg", "");
    publish_.write("download/Corvane-0.78.0.dmg", "somebody put it here");
    const auto before = publish_.snapshot();
    struct Case {
        const char* version;
        const char* notes;
        const char* image; // a file, a number of bytes, or none
        const char* reason;
    };
    const std::vector<Case> cases{{"0.75.0", "notes.html", "", "not newer"},
                                  {"0.75", "notes.html", "", "not newer"},
                                  {"0.9.99", "notes.html", "", "not newer"},
                                  {"1.2.3-beta", "notes.html", "", "not a version"},
                                  {"../1", "notes.html", "", "not a version"},
                                  {"1..2", "notes.html", "", "not a version"},
                                  {"+1", "notes.html", "", "not a version"},
                                  {"1.2.3.4.5", "notes.html", "", "not a version"},
                                  {"99999999999999999999", "notes.html", "", "not a version"},
                                  {"0.76.0", "missing", "", "cannot use"},
                                  {"0.76.0", "", "", "not a regular file"},
                                  {"0.76.0", "empty", "", "is empty"},
                                  {"0.76.0", "latin", "", "not UTF-8"},
                                  {"0.76.0", "long", "", "longer than"},
                                  {"0.76.0", "notes.html", "missing.dmg", "cannot use"},
                                  {"0.76.0", "notes.html", "void.dmg", "is empty"},
                                  {"0.78.0", "notes.html", "100", "is there already"}};
    for (const auto& one : cases) {
        auto line = lineFor(one.version);
        line.notesFile = data_.path() / one.notes;
        if (std::string_view(one.image) == "100")
            line.imageSize = 100;
        else if (*one.image != '\0')
            line.imageFile = data_.path() / one.image;
        const auto said = run(line);
        EXPECT_TRUE(said.starts_with("refused: ") && said.contains(one.reason)) << one.version << ": " << said;
        EXPECT_TRUE(publish_.snapshot() == before) << one.version << " " << one.notes;
    }
}

TEST_F(ReleaseCommandTest, AFolderThatCannotBeUnderstoodIsLeftAlone)
{
    struct Case {
        const char* file;
        const char* text;
    };
    for (const auto& [file, text] :
         {Case{"version.json", "{}"}, Case{"version.json", R"({"version": "soon"})"},
          Case{"Previous_Releases/index.json", "{}"}, Case{"Previous_Releases/index.json", R"({"archives": 1})"},
          Case{"whatsnew.html", "\xFF"}}) {
        const auto path = std::filesystem::path("Corvane/mac_whatsnew") / file;
        const auto good = publish_.snapshot().at(path.string());
        publish_.write(path, text);
        const auto before = publish_.snapshot();
        auto line = lineFor("0.76.0");
        line.imageFile = data_.path() / "image.dmg";
        EXPECT_TRUE(run(line).starts_with("refused: ")) << file << ": " << text;
        EXPECT_TRUE(publish_.snapshot() == before) << file << ": " << text;
        publish_.write(path, good);
    }
    EXPECT_TRUE(run(lineFor("0.76.0")).starts_with("Published")) << "all is as it was";
}

} // namespace
} // namespace corvane::server::testing
