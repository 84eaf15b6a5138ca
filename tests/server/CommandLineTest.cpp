#include "commands/CommandLine.h"

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

using Command = CommandLine::Command;

TEST(CommandLineTest, ReadsEveryCommandWithItsOptions)
{
    const auto serve = CommandLine::parse(
        {"--port", "0", "--data=/d", "--publish-folder", "/p", "--public-origin", "https://example.org:3002"});
    ASSERT_TRUE(serve);
    EXPECT_EQ(serve->command, Command::serve);
    EXPECT_EQ(serve->port, 0);
    EXPECT_EQ(serve->dataFolder, "/d");
    EXPECT_EQ(serve->publishFolder, "/p");
    EXPECT_EQ(serve->publicOrigin->origin(), "https://example.org:3002");

    const auto notify = CommandLine::parse({"notify", "--title", "Grüße", "--body", "--x", "--profile", "Ada"});
    ASSERT_TRUE(notify);
    EXPECT_EQ(notify->command, Command::notify);
    EXPECT_EQ(notify->title, "Grüße");
    EXPECT_EQ(notify->body, "--x");
    EXPECT_EQ(notify->profile, "Ada");

    EXPECT_EQ(CommandLine::parse({"profiles", "--data", "/d"})->command, Command::profiles);
    EXPECT_EQ(CommandLine::parse({"events", "--data", "/d"})->dataFolder, "/d");
    EXPECT_TRUE(CommandLine::parse({"events", "--json"})->wantsJson);
    const auto release =
        CommandLine::parse({"release", "0.76.0", "--publish-folder=/p", "--notes", "n", "--image-size=9"});
    ASSERT_TRUE(release);
    EXPECT_EQ(release->command, Command::release);
    EXPECT_EQ(release->argument, "0.76.0");
    EXPECT_EQ(release->publishFolder, "/p");
    EXPECT_EQ(release->notesFile, "n");
    EXPECT_EQ(release->imageSize, 9U);

    const auto catalogue = CommandLine::parse({"catalogue", "--publish-folder", "/p", "sites.json"});
    ASSERT_TRUE(catalogue);
    EXPECT_EQ(catalogue->command, Command::catalogue);
    EXPECT_EQ(catalogue->argument, "sites.json");
    EXPECT_EQ(CommandLine::parse({"store-version", "none", "--publish-folder=/p"})->command, Command::storeVersion);
    EXPECT_EQ(CommandLine::parse({"publish-folder", "/new"})->argument, "/new");
    EXPECT_NE(CommandLine::parse({"--help"})->help.find("store-version"), std::string::npos);

    EXPECT_EQ(CommandLine::parse({"--version"})->command, Command::showVersion);
    EXPECT_NE(CommandLine::parse({"notify", "--help"})->help.find("--body-file"), std::string::npos);
}

TEST(CommandLineTest, RefusesWhatItDoesNotUnderstand)
{
    const std::vector<std::vector<std::string>> wrong{
        {"--port", "65536"},
        {"--port", "-1"},
        {"--port", "x"},
        {"--port"},
        {"--data", ""},
        {"--nothing"},
        {"serve"},
        {"profiles", "more"},
        {"profiles", "--port", "1"},
        {"profiles", "--json"},
        {"events", "--title", "x"},
        {"notify"},
        {"notify", "--title", "x", "--body", "a", "--body-file", "b"},
        {"release", "--publish-folder=/p", "--notes=n"},
        {"release", "", "--publish-folder=/p", "--notes=n"},
        {"release", "1", "2", "--publish-folder=/p", "--notes=n"},
        {"release", "1", "--notes=n"},
        {"release", "1", "--publish-folder=/p"},
        {"release", "1", "--publish-folder=/p", "--notes=n", "--image=i", "--image-size=1"},
        {"release", "1", "--publish-folder=/p", "--notes=n", "--image-size=0"},
        {"release", "1", "--publish-folder=/p", "--notes=n", "--image-size=17179869185"},
        {"catalogue", "sites.json"},
        {"catalogue", "--publish-folder=/p"},
        {"store-version", "1", "--publish-folder="},
        {"publish-folder"},
        {"--public-origin", "ftp://example.org"},
        {"--public-origin", "https://example.org/path"}};
    for (const auto& arguments : wrong)
        EXPECT_FALSE(CommandLine::parse(arguments)) << ::testing::PrintToString(arguments);
}

} // namespace
} // namespace corvane::server::testing
