#include "commands/EventsCommand.h"

#include "base/Text.h"
#include "store/EventStore.h"

#include <algorithm>

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace corvane::server {
namespace {

std::string timeOf(const UsageEvent& event)
{
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(event.receivedAt.time_since_epoch().count()));
}

/// A value from outside, fit for a terminal: bare where it is one word, else in quotes.
std::string shownValue(const Json& value)
{
    const auto* text = textOf(&value);
    if (text == nullptr)
        return compactJson(value);
    auto shown = safeTitle(*text);
    const bool isOneWord =
        !shown.empty() && std::ranges::none_of(shown, [](char c) { return c == ' ' || c == '"' || c == '\\'; });
    return isOneWord ? shown : compactJson(shown);
}

std::string lineOf(const UsageEvent& event)
{
    auto line = fmt::format("{}  {}  {}  {}", timeOf(event), event.clientId, event.sequence, event.name);
    if (!event.parameters.empty())
        line += ' ';
    for (const auto& [name, value] : event.parameters.items())
        line += fmt::format(" {}={}", name, shownValue(value));
    return line;
}

std::string jsonOf(const UsageEvent& event)
{
    const Json document{{"time", timeOf(event)},          {"measurementId", event.measurementId},
                        {"clientId", event.clientId},     {"sessionId", event.sessionId},
                        {"sequence", event.sequence},     {"event", event.name},
                        {"parameters", event.parameters}, {"userProperties", event.userProperties},
                        {"userAgent", event.userAgent}};
    constexpr int withoutIndent = -1;
    constexpr bool onlyAscii = true; // no terminal takes part of a text for a command
    return document.dump(withoutIndent, ' ', onlyAscii);
}

} // namespace

std::string listEvents(Database& database, EventForm form)
{
    std::string lines;
    for (const auto& event : EventStore(database).all())
        lines += (form == EventForm::json ? jsonOf(event) : lineOf(event)) + "\n";
    return lines;
}

} // namespace corvane::server
