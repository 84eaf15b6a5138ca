#include "notifications/NotificationText.h"

#include "base/Text.h"
#include "ports/HttpClient.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {
namespace {

constexpr std::string_view headStart =
    "<!DOCTYPE html><html><head><meta charset=\"utf-8\">\n<style>\n"
    "html,body{margin:0;padding:12px;font:14px -apple-system,BlinkMacSystemFont,sans-serif;color:inherit;}\n"
    "a{color:var(--link,#8ec8ff);}\n"
    ".footer-link{margin-top:16px;font-size:0.9rem;}\n"
    ".footer-link a{text-decoration:underline;}\n"
    "</style>";
constexpr std::string_view headEnd = "</head><body>";
constexpr std::string_view bodyEnd = "</body></html>";
constexpr std::string_view themePlaceholder = "{{THEME_CSS}}";

constexpr auto largestPage = bytesOf(BodyLimit::page);

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

/// Whether `text` begins with `prefix`, which is in lower case, whatever the case of ASCII letters.
bool startsIgnoringCase(std::string_view text, std::string_view prefix)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return text.size() >= prefix.size() && std::ranges::equal(text.substr(0, prefix.size()), prefix, {}, lower);
}

/// The length of the line break that `text` begins with, in the manner of any system; 0 for none.
std::size_t lineBreakLength(std::string_view text)
{
    if (text.starts_with("\r\n"))
        return 2;
    return text.starts_with('\n') || text.starts_with('\r') ? 1 : 0;
}

/// The length of the tag at the beginning of `text` that ends a line; 0 for none.
std::size_t lineEndingTagLength(std::string_view text)
{
    if (startsIgnoringCase(text, "</p>"))
        return 4;
    if (!startsIgnoringCase(text, "<br"))
        return 0;
    auto length = 3 + leadingWhiteSpace(text.substr(3));
    if (text.substr(length).starts_with('/'))
        ++length;
    return text.substr(length).starts_with('>') ? length + 1 : 0;
}

/// The functions below go through their text once: it comes from a server and may be large and hostile.
std::string withLineEndings(std::string_view html)
{
    std::string text;
    text.reserve(html.size());
    while (!html.empty()) {
        const auto plain = std::min(html.find('<'), html.size());
        text += html.substr(0, plain);
        html.remove_prefix(plain);
        if (html.empty())
            break;
        const auto tag = lineEndingTagLength(html);
        text += tag == 0 ? '<' : '\n';
        html.remove_prefix(std::max<std::size_t>(tag, 1));
    }
    return text;
}

std::string withoutTags(std::string_view html)
{
    std::string text;
    text.reserve(html.size());
    while (true) {
        const auto start = html.find('<');
        const auto end = start == std::string_view::npos ? start : html.find('>', start);
        if (end == std::string_view::npos)
            return text.append(html);
        text += html.substr(0, start);
        html.remove_prefix(end + 1);
    }
}

/// Spaces and tabs as single spaces, and none beside a line break.
std::string withFoldedBlanks(std::string_view text)
{
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        if (isBlank(text.front())) {
            text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
            if (lineBreakLength(text) == 0 && !folded.ends_with('\n'))
                folded += ' ';
        } else if (const auto lineBreak = lineBreakLength(text); lineBreak > 0) {
            folded += '\n';
            text.remove_prefix(lineBreak);
        } else {
            folded += text.front();
            text.remove_prefix(1);
        }
    }
    return folded;
}

/// On one line, with single spaces.
std::string onOneLine(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    while (!text.empty()) {
        const auto blanks = leadingWhiteSpace(text);
        line += blanks > 0 ? ' ' : text.front();
        text.remove_prefix(std::max<std::size_t>(blanks, 1));
    }
    return std::string(trimmed(line));
}

std::string escaped(std::string_view text)
{
    std::string html;
    html.reserve(text.size());
    while (!text.empty()) {
        const auto lineBreak = lineBreakLength(text);
        if (lineBreak > 0)
            html += "<br>";
        else if (text.front() == '&')
            html += "&amp;";
        else if (text.front() == '<')
            html += "&lt;";
        else if (text.front() == '>')
            html += "&gt;";
        else
            html += text.front();
        text.remove_prefix(std::max<std::size_t>(lineBreak, 1));
    }
    return html;
}

std::string linkFooter(const PendingNotification& notification)
{
    const auto url = linkURL(notification.url);
    if (!url)
        return {};
    const auto link = escaped(url->text());
    return "<p class=\"footer-link\">Link: <a href=\"" + link + "\" target=\"_blank\" rel=\"noopener noreferrer\">" +
           link + "</a></p>";
}

/// The document with the theme in every place that asks for it: in the first one always, and no more once the document
/// would grow past the largest page. One style element is as good as many.
std::string themed(std::string_view document, std::string_view themeCSS)
{
    std::string filled;
    auto theme = themeCSS;
    while (true) {
        const auto place = document.find(themePlaceholder);
        filled += document.substr(0, place);
        if (place == std::string_view::npos)
            return filled;
        filled += theme;
        document.remove_prefix(place + themePlaceholder.size());
        if (filled.size() + document.size() + theme.size() > largestPage)
            theme = {};
    }
}

void appendPart(std::string& text, std::string_view part)
{
    if (!part.empty())
        text.append("\n\n").append(part);
}

} // namespace

std::string shownTitle(const PendingNotification& notification)
{
    return notification.title.empty() ? "Notification" : notification.title;
}

bool looksLikeHTML(std::string_view text)
{
    static constexpr std::array<std::string_view, 10> marks{"</",    "<br", "<p",  "<div", "<a ",
                                                            "<span", "<h1", "<h2", "<ul",  "<li"};
    for (auto place = text.find('<'); place != std::string_view::npos; place = text.find('<', place + 1)) {
        const auto tag = text.substr(place);
        if (std::ranges::any_of(marks, [tag](std::string_view mark) { return startsIgnoringCase(tag, mark); }))
            return true;
    }
    return false;
}

std::string plainText(std::string_view html)
{
    return std::string(trimmed(withFoldedBlanks(withoutTags(withLineEndings(html)))));
}

std::string preview(std::string_view body, std::size_t limit)
{
    const auto line = onOneLine(plainText(body));
    const auto shown = firstCodePoints(line, limit);
    return std::string(shown) + (shown.size() < line.size() ? "…" : "");
}

std::string copyText(const PendingNotification& notification)
{
    const auto& [recipient, campaign, title, body, url] = notification;
    auto text = shownTitle(notification);
    const bool isHTML = looksLikeHTML(body);
    appendPart(text, isHTML ? plainText(body) : body);
    if (!isHTML)
        appendPart(text, trimmed(url));
    return text;
}

std::string titleAndPreview(const PendingNotification& notification)
{
    auto text = shownTitle(notification);
    appendPart(text, preview(notification.body, previewLimit));
    return text;
}

std::optional<Url> linkURL(std::string_view text)
{
    static constexpr std::array<std::string_view, 5> schemes{"http", "https", "mailto", "itms-apps", "itms-appss"};
    auto url = Url::parse(trimmed(text));
    return url && std::ranges::find(schemes, url->scheme()) != schemes.end() ? url : std::nullopt;
}

std::string bodyHTML(const PendingNotification& notification, std::string_view themeCSS)
{
    std::string content;
    if (looksLikeHTML(notification.body))
        content = notification.body;
    else
        content = "<p>" + escaped(notification.body) + "</p>" + linkFooter(notification);

    std::string document(headStart);
    if (!content.contains(themePlaceholder))
        return document.append(themeCSS).append(headEnd).append(content).append(bodyEnd);
    return themed(document.append(headEnd).append(content).append(bodyEnd), themeCSS);
}

} // namespace corvane
