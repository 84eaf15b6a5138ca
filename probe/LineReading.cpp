#include "LineReading.h"

#include "Answer.h"
#include "base/Url.h"
#include "browser/PageReport.h"
#include "notifications/NotificationText.h"
#include "settings/Color.h"
#include "updates/VersionOrder.h"

#include <algorithm>
#include <array>
#include <iostream>

namespace corvane::probe {
namespace {

std::unexpected<Error> wrong(std::string message)
{
    return std::unexpected(Error{std::move(message)});
}

/// The answer to lines that are a JSON string.
template <Json (*answer)(const std::string& text)>
Result<Json> ofText(const std::string&, const Json& value)
{
    const auto* text = textOf(&value);
    return text == nullptr ? wrong("A JSON string is expected.") : Result<Json>(answer(*text));
}

Json colour(const std::string& text)
{
    const auto color = parseCSSColor(text);
    return color ? Json{color->red, color->green, color->blue, color->opacity} : Json();
}

Json address(const std::string& text)
{
    const auto url = Url::parse(text);
    return url ? Json{{"scheme", url->scheme()}, {"host", url->host()}, {"text", url->text()}} : Json();
}

Json previewOf(const std::string& text)
{
    return preview(text, previewLimit);
}

Result<Json> newer(const std::string&, const Json& value)
{
    if (!value.is_array() || value.size() != 2 || !value[0].is_string() || !value[1].is_string())
        return wrong("An array of two JSON strings is expected.");
    return Json(isVersionNewer(*textOf(&value[0]), *textOf(&value[1])));
}

/// The document of a body without its frame, which is what surrounds the paragraph of an empty one.
std::string withoutFrame(const PendingNotification& notification)
{
    static constexpr std::string_view emptyParagraph = "<p></p>";
    const auto frame = bodyHTML({}, "");
    const auto start = frame.rfind(emptyParagraph);
    const auto behind = frame.size() - start - emptyParagraph.size();
    const auto document = bodyHTML(notification, "");
    return document.substr(start, document.size() - start - behind);
}

Result<Json> body(const std::string&, const Json& value)
{
    const auto* text = textOf(member(value, "body"));
    const auto* url = textOf(member(value, "url"));
    if (text == nullptr || url == nullptr)
        return wrong(R"(An object with the strings "body" and "url" is expected.)");
    PendingNotification notification{.body = *text};
    const auto content = withoutFrame(notification);
    notification.url = *url;
    return Json{{"looksLikeHTML", looksLikeHTML(*text)},
                {"content", content},
                {"footer", withoutFrame(notification).substr(content.size())}};
}

Result<Json> message(const std::string& line, const Json&)
{
    static constexpr std::array names{"success", "binddevice", "deleteProfile"};
    const auto read = readPageReport(line);
    if (!read)
        return Json();
    return Json{{"action", names[static_cast<std::size_t>(read->action)]}, {"token", orNull(read->bindingToken)}};
}

constexpr std::array<LineKind, 6> kinds{{{"colour", ofText<colour>},
                                         {"newer", newer},
                                         {"address", ofText<address>},
                                         {"body", body},
                                         {"message", message},
                                         {"preview", ofText<previewOf>}}};

} // namespace

const LineKind* lineKindNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(kinds, name, &LineKind::name);
    return found == kinds.end() ? nullptr : found;
}

void answerLines(const LineKind& kind)
{
    for (std::string line; std::getline(std::cin, line);) {
        const auto value = parseJson(line);
        report(value ? kind.answer(line, *value) : wrong("The line is no JSON."));
    }
}

} // namespace corvane::probe
