#include "base/Url.h"

#include "base/Json.h"
#include "base/Text.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::string_literals;

TEST(UrlTest, KeepsTheSpellingAndReadsTheParts)
{
    struct Case {
        std::string text, kept, scheme, host, path, query, fragment, origin;
    };
    const std::vector<Case> cases{
        {"http://h/a%2Fb/%c3%A4?x=%2f#f%20g", "", "http", "h", "/a%2Fb/%c3%A4", "x=%2f", "f%20g", "http://h"},
        {"HTTPS://User:pw@EXAMPLE.com:443/", "", "https", "example.com", "/", "", "", "https://example.com"},
        {"http://h:8080", "", "http", "h", "", "", "", "http://h:8080"},
        {"http://h:65535?a?b#c?d", "", "http", "h", "", "a?b", "c?d", "http://h:65535"},
        {"http://h:/?#", "", "http", "h", "/", "", "", "http://h"},
        {"http://h#a", "", "http", "h", "", "", "a", "http://h"},
        {"http://[::1]:80/x", "", "http", "[::1]", "/x", "", "", "http://[::1]"},
        {"http://bücher.de/ä?ö#ü", "http://xn--bcher-kva.de/%C3%A4?%C3%B6#%C3%BC", "http", "xn--bcher-kva.de",
         "/%C3%A4", "%C3%B6", "%C3%BC", "http://xn--bcher-kva.de"},
        {"https://ＥＸＡＭＰＬＥ．com/", "https://example.com/", "https", "example.com", "/", "", "",
         "https://example.com"},
        {"mailto:a@b.c?subject=x", "", "mailto", "", "a@b.c", "subject=x", "", ""},
        {"file:///etc/a%2520b", "", "file", "", "/etc/a%2520b", "", "", ""},
        {"JavaScript:alert(1)", "", "javascript", "", "alert(1)", "", "", ""},
        {"data:text/html,a", "", "data", "", "text/html,a", "", "", ""},
    };
    for (const auto& expected : cases) {
        const auto url = Url::parse(expected.text);
        ASSERT_TRUE(url) << expected.text;
        EXPECT_EQ(url->text(), expected.kept.empty() ? expected.text : expected.kept);
        EXPECT_EQ(url->scheme(), expected.scheme) << expected.text;
        EXPECT_EQ(url->host(), expected.host) << expected.text;
        EXPECT_EQ(url->path(), expected.path) << expected.text;
        EXPECT_EQ(url->query(), expected.query) << expected.text;
        EXPECT_EQ(url->fragment(), expected.fragment) << expected.text;
        EXPECT_EQ(url->origin(), expected.origin) << expected.text;
        EXPECT_EQ(url->isHttp(), !expected.origin.empty()) << expected.text;
    }
}

TEST(UrlTest, RefusesWhatReadersDisagreeOn)
{
    const std::vector<std::string> refused{
        "",
        "h",
        "//h/",
        "/a",
        ":a",
        "1http://h/",
        "ht tp://h/",
        "http:",
        "http://",
        "http:h",
        "http:/h",
        "http:///h",
        "http://?q",
        "http://:80/",
        "http://u@/",
        "http://u@:80", // no host
        " http://h/",
        "http://h/ ",
        "http://h/a b",
        "http://h/\ta",
        "http://h/a\n",
        "http://h/\x7F",
        "http://h/\0"s,
        "http://h/\"",
        "http://h/<a>",
        "http://h\\@evil/",
        "http://h/a\\b",
        "http://h/{a}",
        "http://h/a|b",
        "http://h/^`",
        "http://h/%",
        "http://h/%2",
        "http://h/%zz",
        "http://h/a#b#c",
        "http://h/[a]",
        "http://[::1/",
        "http://::1/",
        "http://a@b@c/",
        "http://u[@h/",
        "http://[::1]x/",
        "http://[h]/",
        "http://h:65536/",
        "http://h:-1/",
        "http://h:+1/",
        "http://h:8a/",
        "http://h:80:80/",
        "http://h:99999999999/",
        "http://h/\xFF",
        "http://h\xC0\xAF/",
        "http://ex%61mple.com/",
        "http://good%2F.evil/", // unclear host
        "http://good／evil/",
        "http://good＠evil/",
        "http://good：80/",
        "http://good？evil/",
        "http://good＃x/",
        "http://good％41/",
        "http://good＼evil/",
        "http://a　b/",
        "http://a；b＆c/",
        "http://2130706433/", // engines read these as 127.0.0.1 and ::1
        "http://127.1/",
        "http://0x7f.0.0.1/",
        "http://127.0.0.01/",
        "http://h.0x7F./",
        "http://１２７.1/",
        "http://[0:0:0:0:0:0:0:1]/",
        "http://[:::::]/",
        "http://h'/",
        "http://a;b/",
    };
    for (const auto& text : refused) {
        const auto url = Url::parse(text);
        EXPECT_FALSE(url) << text << " -> " << (url ? url->text() : "");
    }
}

TEST(UrlTest, EncodesWhatTheEngineLeavesOpen)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"https://h/a|b?c={d}[e]#f#g", "https://h/a%7Cb?c=%7Bd%7D%5Be%5D#f%23g"},
        {"https://h/100%/%41?%", "https://h/100%25/%41?%25"},
        {"https://h/a b", "https://h/a%20b"},
        {"https://[::1]:8/\"", "https://[::1]:8/%22"},
        {"data:text/html,<b>", "data:text/html,%3Cb%3E"},
        {"about:blank", "about:blank"},
    };
    for (const auto& [address, text] : cases) {
        const auto url = Url::fromEngine(address);
        ASSERT_TRUE(url) << address;
        EXPECT_EQ(url->text(), text);
    }
    for (const auto* address : {"", "blank", "https://h|x/", "https:///x", "https://a@b@c/"})
        EXPECT_FALSE(Url::fromEngine(address)) << address;
}

std::optional<Json> publicCollection(const char* file)
{
    std::ifstream input(std::filesystem::path(CORVANE_SOURCE_DIR) / "../shared/corpora" / file);
    return input ? parseJson(std::string(std::istreambuf_iterator(input), {})) : std::nullopt;
}

/// Addresses in numbers have many spellings; a browser shows one, this reader keeps the one it got.
bool isNumeric(std::string_view host)
{
    while (host.ends_with('.'))
        host.remove_suffix(1);
    const auto last = host.substr(host.rfind('.') + 1);
    return host.starts_with('[') || last.starts_with("0x") || last.find_first_not_of("0123456789") == std::string::npos;
}

TEST(UrlTest, SeesTheHostThatABrowserSeesOrNone)
{
    const auto cases = publicCollection("addresses/urltestdata.json");
    if (!cases)
        GTEST_SKIP() << "the collection of addresses is not there";
    int compared = 0;
    for (const auto& entry : *cases) {
        const auto* input = textOf(member(entry, "input"));
        const auto url = input == nullptr ? std::nullopt : Url::parse(*input);
        if (!url || !url->isHttp() || isNumeric(url->host()))
            continue;
        const auto* host = textOf(member(entry, "hostname"));
        const auto* origin = textOf(member(entry, "origin"));
        EXPECT_EQ(url->host(), host == nullptr ? "no address to a browser" : *host) << *input;
        EXPECT_EQ(url->origin(), origin == nullptr ? url->origin() : *origin) << *input;
        ++compared;
    }
    EXPECT_GT(compared, 50);
}

TEST(UrlTest, WritesEveryPathAsAnAddressOfTheSameFile)
{
    for (const auto& [path, address] :
         std::vector<std::pair<std::string, std::string>>{{"/usr/share/a.html", "file:///usr/share/a.html"},
                                                          {"/a b/ä?#%20", "file:///a%20b/%C3%A4%3F%23%2520"},
                                                          {"/\xFF\n", "file:///%FF%0A"}}) {
        const auto url = Url::ofFile(path);
        EXPECT_EQ(url.text(), address);
        EXPECT_EQ(percentDecoded(url.path()), path);
    }
}

TEST(UrlTest, NaughtyTextNeverBreaksTheReaders)
{
    const auto texts = publicCollection("strings/blns.json");
    if (!texts)
        GTEST_SKIP() << "the collection of naughty strings is not there";
    ASSERT_GT(texts->size(), 100U);
    for (const auto& entry : *texts) {
        const auto& text = *textOf(&entry);
        for (const auto& address : {text, "http://" + text, "http://h/" + text, "x:" + text}) {
            const auto parsed = Url::parse(address);
            if (parsed)
                EXPECT_EQ(Url::parse(parsed->text()), parsed) << address;
            const auto mirrored = Url::fromEngine(address);
            EXPECT_TRUE(!mirrored || Url::parse(mirrored->text()) == mirrored) << address;
        }
        EXPECT_EQ(trimmed(trimmed(text)), trimmed(text));
        EXPECT_TRUE(isValidUtf8(safeTitle(text)));
        EXPECT_EQ(safeTitle(safeTitle(text)), safeTitle(text));
    }
}

} // namespace
} // namespace corvane
