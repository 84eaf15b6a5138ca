#include "Target.h"
#include "base/Text.h"
#include "notifications/NotificationText.h"
#include "ports/HttpClient.h"

#include <algorithm>
#include <array>

namespace corvane::fuzz {
namespace {

constexpr std::string_view theme = "<style id=\"theme-vars\">:root{--text:#fff}</style>";
constexpr std::string_view themePlaceholder = "{{THEME_CSS}}";

std::string replaced(std::string text, std::string_view part, std::string_view by)
{
    for (auto place = text.find(part); place != std::string::npos; place = text.find(part, place + by.size()))
        text.replace(place, part.size(), by);
    return text;
}

/// What stands between two marks of a document, which it holds once and in this order.
std::string between(std::string_view document, std::string_view start, std::string_view end)
{
    const auto from = document.find(start);
    const auto to = document.rfind(end);
    const bool isFramed = from != std::string_view::npos && to != std::string_view::npos && from + start.size() <= to;
    require(isFramed && to + end.size() == document.size(), "a document has one frame");
    return std::string(document.substr(from + start.size(), to - from - start.size()));
}

bool holdsKnownTag(std::string_view body)
{
    static constexpr std::array<std::string_view, 10> tags{"</",    "<br", "<p",  "<div", "<a ",
                                                           "<span", "<h1", "<h2", "<ul",  "<li"};
    const auto lower = lowercased(body);
    return std::ranges::any_of(tags, [&](std::string_view tag) { return lower.contains(tag); });
}

void requireTexts(std::string_view body)
{
    const auto plain = plainText(body);
    require(plain.size() <= body.size() && trimmed(plain) == plain, "plain text is shorter and trimmed");
    require(!plain.contains('\t') && !plain.contains('\r') && !plain.contains("  ") && !plain.contains("\n "),
            "the white space of plain text is folded");
    require(!isValidUtf8(body) || isValidUtf8(plain), "plain text stays UTF-8");

    const auto line = preview(body, previewLimit);
    require(line.find_first_of("\t\n\r\v\f") == std::string::npos && !line.contains("  "), "a preview is one line");
    require(firstCodePoints(line, previewLimit + 1) == line, "a preview is short");
    require(!isValidUtf8(body) || isValidUtf8(line), "a preview stays UTF-8");
    require(preview(body, body.size() + 1).starts_with(firstCodePoints(line, previewLimit)) ||
                line.size() > body.size(),
            "a preview is the beginning of the text");
}

/// The content of a document made of plain text says exactly that text.
void requireEscaping(std::string_view body, std::string content, const std::optional<Url>& link)
{
    if (link) {
        const auto footer = content.rfind("<p class=\"footer-link\">");
        require(footer != std::string::npos, "a plain notification shows its address");
        const auto address = replaced(link->text(), "&", "&amp;");
        require(content.substr(footer).contains("<a href=\"" + address + "\" "), "the link is the address");
        content.resize(footer);
    }
    auto text = replaced(between(content, "<p>", "</p>"), "<br>", "\n");
    require(text.find_first_of("<>") == std::string::npos, "plain text brings no markup");
    for (const auto& [entity, character] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}})
        text = replaced(std::move(text), entity, character);
    require(text == replaced(replaced(std::string(body), "\r\n", "\n"), "\r", "\n"), "plain text is shown as it is");
}

} // namespace

void readInput(std::string_view bytes)
{
    const std::string body(bytes);
    require(looksLikeHTML(body) == holdsKnownTag(body), "HTML is what holds a known tag");
    requireTexts(body);

    const auto link = linkURL(body);
    static constexpr std::array<std::string_view, 5> schemes{"http", "https", "mailto", "itms-apps", "itms-appss"};
    require(!link || std::ranges::count(schemes, link->scheme()) == 1, "links lead to web, mail and store");

    const PendingNotification notification{.recipientId = 1, .title = body, .body = body, .url = body};
    const auto document = bodyHTML(notification, theme);
    require(document.size() <= bytesOf(BodyLimit::page), "a document is no larger than a page");
    require(document.contains(theme), "a document has the theme");
    const auto content = between(document, "</head><body>", "</body></html>");
    if (looksLikeHTML(body))
        require(content == replaced(body, themePlaceholder, theme), "HTML is shown as it is");
    else if (!body.contains(themePlaceholder))
        requireEscaping(body, content, link);

    require(copyText(notification).starts_with(shownTitle(notification)), "a copy begins with the title");
    require(titleAndPreview(notification).starts_with(shownTitle(notification)), "a line begins with the title");
}

} // namespace corvane::fuzz
