#include "browser/LoadableAddress.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string typed(std::string_view text)
{
    const auto url = parseTyped(text);
    return url ? url->text() : "none";
}

TEST(LoadableAddressTest, CompletesWhatAPersonTypes)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"  chat.example\n", "https://chat.example"},
        {"HTTP://chat.example/A", "HTTP://chat.example/A"},
        {"hTTps://chat.example", "hTTps://chat.example"},
        {"http://127.0.0.1:3002/chat/", "http://127.0.0.1:3002/chat/"},
        {"chat.example/?q=a%20b", "https://chat.example/?q=a%20b"},
        {"ftp://chat.example", "https://ftp://chat.example"}, // a host named "ftp", and that parses
        {"two words", "none"},
        {"   \n", "none"},
        {"https://", "none"},
        {"javascript:alert(1)", "none"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(typed(text), expected) << text;
}

TEST(LoadableAddressTest, KeepsScriptsOutOfThePageShown)
{
    EXPECT_FALSE(parseLoadable("javascript:alert(1)"));
    EXPECT_FALSE(parseLoadable("JavaScript:alert(1)"));
    for (const auto* text : {"https://a.example/", "file:///tmp/x.html", "data:text/plain,x", "mailto:a@b.example"})
        EXPECT_TRUE(parseLoadable(text)) << text;
}

TEST(LoadableAddressTest, LetsPagesAskOnlyForHarmlessNewWindows)
{
    const auto web = Url::parse("https://chat.example/");
    const auto file = Url::parse("file:///tmp/a.html");
    struct Case {
        std::string requested;
        bool fromWeb;
        bool fromFile;
    };
    for (const auto& [requested, fromWeb, fromFile] : std::vector<Case>{{"https://b.example/", true, true},
                                                                        {"mailto:a@b.example", true, true},
                                                                        {"file:///etc/passwd", false, true},
                                                                        {"FILE:///etc/passwd", false, true},
                                                                        {"data:text/html,x", false, false},
                                                                        {"javascript:alert(1)", false, false},
                                                                        {"about:blank", false, false},
                                                                        {"blob:https://b.example/1", false, false},
                                                                        {"webkit://gpu", false, false}}) {
        EXPECT_EQ(mayReplacePage(*Url::parse(requested), web), fromWeb) << requested;
        EXPECT_EQ(mayReplacePage(*Url::parse(requested), file), fromFile) << requested;
        EXPECT_EQ(mayReplacePage(*Url::parse(requested), std::nullopt), fromWeb) << requested;
    }
}

} // namespace
} // namespace corvane
