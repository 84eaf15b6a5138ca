#include "browser/PageReport.h"

#include "base/Json.h"
#include "base/Text.h"

namespace corvane {
namespace {

constexpr std::size_t longestBody = 64 * 1024;
constexpr std::size_t deepestBody = 64;

std::optional<PageReport::Action> actionNamed(std::string_view text)
{
    const auto name = lowercased(trimmed(text));
    if (name == "success")
        return PageReport::Action::success;
    if (name == "binddevice")
        return PageReport::Action::binddevice;
    if (name == "delete" || name == "deleted" || name == "profile_deleted" || name == "profiledeleted")
        return PageReport::Action::deleteProfile;
    return std::nullopt;
}

std::optional<PageReport> readObject(const Json& object)
{
    for (const auto* key : {"action", "type", "message"}) {
        const auto* text = textOf(member(object, key));
        const auto action = text == nullptr ? std::nullopt : actionNamed(*text);
        if (!action)
            continue;
        PageReport report{.action = *action};
        if (const auto* token = textOf(member(object, "bindingToken")); token != nullptr && !trimmed(*token).empty())
            report.bindingToken = trimmed(*token);
        return report;
    }
    return std::nullopt;
}

std::optional<PageReport> readText(const std::string& text)
{
    if (const auto action = actionNamed(text))
        return PageReport{.action = *action};
    const auto inner = parseJson(text, deepestBody);
    return inner ? readObject(*inner) : std::nullopt;
}

} // namespace

std::optional<PageReport> readPageReport(std::string_view bodyJson)
{
    if (bodyJson.size() > longestBody)
        return std::nullopt;
    const auto body = parseJson(bodyJson, deepestBody);
    if (!body)
        return std::nullopt;
    const auto* text = textOf(&*body);
    return text != nullptr ? readText(*text) : readObject(*body);
}

} // namespace corvane
