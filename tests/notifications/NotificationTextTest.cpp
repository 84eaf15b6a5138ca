#include "notifications/NotificationText.h"

#include "ports/HttpClient.h"

#include <chrono>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

const std::string headStart =
    "<!DOCTYPE html><html><head><meta charset=\"utf-8\">\n<style>\nhtml,body{margin:0;padding:12px;font:14px "
    "-apple-system,BlinkMacSystemFont,sans-serif;color:inherit;}\na{color:var(--link,#8ec8ff);}\n"
    ".footer-link{margin-top:16px;font-size:0.9rem;}\n.footer-link a{text-decoration:underline;}\n</style>";
const std::string theme = "<style id=\"theme-vars\">:root{--text:#fff}</style>";

std::string repeated(std::string_view text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

/// What stands between head and end of the document for a notification.
std::string content(const std::string& body, const std::string& url = "")
{
    const auto document = bodyHTML({.body = body, .url = url}, theme);
    const auto start = headStart + theme + "</head><body>";
    const std::string end = "</body></html>";
    EXPECT_TRUE(document.starts_with(start) && document.ends_with(end)) << document;
    return document.substr(start.size(), document.size() - start.size() - end.size());
}

TEST(NotificationTextTest, TakesTextForHTMLOnlyWhenItHoldsAKnownTag)
{
    for (const auto* html : {"a</b>", "</", "<BR>", "<p", "x<Div>", "<a href>", "<SPAN", "<h1", "<h2>", "<ul>", "<LI",
                             "<<p", "a < b <pre>"})
        EXPECT_TRUE(looksLikeHTML(html)) << html;
    for (const auto* plain : {"", "<", "a < b", "<a", "<a\t", "<b>", "<h3>", "<em>", "< p>", "1<2>1"})
        EXPECT_FALSE(looksLikeHTML(plain)) << plain;
}

TEST(NotificationTextTest, TurnsMarkupIntoPlainText)
{
    for (const auto& [html, text] : Texts{
             {"", ""},
             {"a<br>b<BR/>c<br \t\n/>d<Br >e<br\u2003/>f", "a\nb\nc\nd\ne\nf"},
             {"<p>one</p><P>two</P>three", "one\ntwo\nthree"},
             {"<brx>a<br / >b<br//>c</p >d", "abcd"},     // other tags, which only go
             {"a<b title='1'>c</b> d < e > f", "ac d f"}, // a lone "<" takes all up to the next ">"
             {"a<b<c>d>e", "ad>e"},
             {"a <b & c", "a <b & c"}, // never closed: the rest stays as it is
             {"x<i>y<j", "xy<j"},
             {"<x<br>y>z", "z"}, // the line break comes first, and goes with the tag around it
             {"<<br>p>a", "a"},
             {" a \t  b \u00A0 c ", "a b \u00A0 c"},
             {"a \n b\t\n\n\tc\r\nd \r e", "a\nb\n\nc\nd\ne"},
             {"<p> \n </p>", ""},
             {"&amp;&lt;", "&amp;&lt;"}, // entities stay
         })
        EXPECT_EQ(plainText(html), text) << html;
}

TEST(NotificationTextTest, PreviewsOnOneLineOfLimitedLength)
{
    const auto umlauts = repeated("ä", 91);
    for (const auto& [body, line] : Texts{
             {repeated("x", 200), repeated("x", 90) + "…"},
             {repeated("x", 90), repeated("x", 90)},
             {umlauts, umlauts.substr(0, 180) + "…"},
             {repeated("x", 90) + " \n\t ", repeated("x", 90)},
             {" a\u2028\n\u00A0\t b<br>c ", "a b c"},
             {"1 < 2, 3 > 2", "1 2"}, // whatever the body looks like
             {" \n", ""},
         })
        EXPECT_EQ(preview(body, previewLimit), line) << body;
}

TEST(NotificationTextTest, CopiesTitleBodyAndTheAddressOfPlainOnes)
{
    struct Case {
        PendingNotification notification;
        std::string copy, line;
    };
    const std::vector<Case> cases{
        {{.title = "T", .body = " a \n b ", .url = "\n x y "}, "T\n\n a \n b \n\nx y", "T\n\na b"},
        {{.title = "T", .body = "<p>a</p>b", .url = "https://h/"}, "T\n\na\nb", "T\n\na b"},
        {{.body = "", .url = " "}, "Notification", "Notification"},
        {{.title = " ", .body = "<br>", .url = "u"}, " ", " "},
        {{.body = "", .url = "u"}, "Notification\n\nu", "Notification"},
    };
    for (const auto& [notification, copy, line] : cases) {
        EXPECT_EQ(copyText(notification), copy);
        EXPECT_EQ(titleAndPreview(notification), line);
    }
}

TEST(NotificationTextTest, LinksOnlyToWebMailAndStore)
{
    for (const auto* good :
         {"https://h/a?b&c", "HTTP://h", " mailto:a@b.c\n", "itms-apps://x", "\u00A0itms-appss://x/y"})
        EXPECT_TRUE(linkURL(good)) << good;
    for (const auto* bad : {"", " ", "h/a", "//h/", "ftp://h/", "file:///etc/passwd", "javascript:alert(1)",
                            "data:text/html,a", "https://", "https://h/a b", "https://h/\"onclick=x"})
        EXPECT_FALSE(linkURL(bad)) << bad;
}

TEST(NotificationTextTest, EscapesPlainBodiesAndAddsTheirLink)
{
    EXPECT_EQ(content("1\n2 < & >"), "<p>1<br>2 &lt; &amp; &gt;</p>");
    EXPECT_EQ(content("a\r\nb\rc"), "<p>a<br>b<br>c</p>");
    EXPECT_EQ(content("&lt; <b>"), "<p>&amp;lt; &lt;b&gt;</p>");
    EXPECT_EQ(content("a", " https://h/?a=1&b=2 "),
              "<p>a</p><p class=\"footer-link\">Link: <a href=\"https://h/?a=1&amp;b=2\" target=\"_blank\" "
              "rel=\"noopener noreferrer\">https://h/?a=1&amp;b=2</a></p>");
    EXPECT_EQ(content("a", "ftp://h/"), "<p>a</p>");
    EXPECT_EQ(content("1 <b>2</b>\n&", "https://h/"), "1 <b>2</b>\n&");
    EXPECT_EQ(content("<p></head>x</head>"), "<p></head>x</head>");
}

TEST(NotificationTextTest, PutsTheThemeWhereTheBodyAsksForIt)
{
    const auto themed = [](const std::string& body) { return bodyHTML({.body = body}, theme); };
    EXPECT_EQ(themed("<p>{{THEME_CSS}}a{{THEME_CSS}}{{THEME_CSS"),
              headStart + "</head><body><p>" + theme + "a" + theme + "{{THEME_CSS</body></html>");
    EXPECT_EQ(themed("{{THEME_CSS}}"), headStart + "</head><body><p>" + theme + "</p></body></html>");

    const std::string large(2000, ' ');
    const auto greedy = bodyHTML({.body = "<p>" + repeated("{{THEME_CSS}}", 300'000)}, large);
    EXPECT_TRUE(greedy.contains("<p>" + large + large));
    EXPECT_LE(greedy.size(), bytesOf(BodyLimit::page));
}

TEST(NotificationTextTest, TakesHostileBodiesInItsStride)
{
    const auto begin = std::chrono::steady_clock::now();
    for (const auto* piece : {"<", "<br", "<br ", "<b", " ", "\t\n", "\r", "</p>", "<br/>", "&", "\u2003", "<a<>"}) {
        const auto body = repeated(piece, (std::size_t{1} << 18U) / std::string_view(piece).size());
        for (const auto& whole : {body, body + std::string(body.size(), ' '), "<br" + body}) {
            EXPECT_LE(plainText(whole).size(), whole.size());
            EXPECT_LE(preview(whole, previewLimit).size(), 3 * previewLimit + 3);
            EXPECT_GE(bodyHTML({.body = whole}, theme).size(), whole.size());
        }
    }
    // Seconds even with sanitizers on; with a square of the length it takes minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

} // namespace
} // namespace corvane
