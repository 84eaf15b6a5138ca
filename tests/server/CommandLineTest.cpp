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
    EXPECT_EQ(CommandLine::parse({"--version"})->command, Command::showVersion);
    EXPECT_NE(CommandLine::parse({"notify", "--help"})->help.find("--body-file"), std::string::npos);
}

TEST(CommandLineTest, RefusesWhatItDoesNotUnderstand)
{
    const std::vector<std::vector<std::string>> wrong{{"--port", "65536"},
                                                      {"--port", "-1"},
                                                      {"--port", "x"},
                                                      {"--port"},
                                                      {"--data", ""},
                                                      {"--nothing"},
                                                      {"serve"},
                                                      {"profiles", "more"},
                                                      {"profiles", "--port", "1"},
                                                      {"notify"},
                                                      {"notify", "--title", "x", "--body", "a", "--body-file", "b"},
                                                      {"--public-origin", "ftp://example.org"},
                                                      {"--public-origin", "https://example.org/path"}};
    for (const auto& arguments : wrong)
        EXPECT_FALSE(CommandLine::parse(arguments)) << ::testing::PrintToString(arguments);
}

} // namespace
} // namespace corvane::server::testing
