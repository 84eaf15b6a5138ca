#include "api/CollectRequest.h"

#include "api/BodyFields.h"
#include "base/Text.h"
#include "http/PercentDecoding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <ranges>
#include <string>

#include <fmt/format.h>

namespace corvane::server {
namespace {

using Items = std::map<std::string, std::string, std::less<>>;

std::unexpected<Error> refuse(std::string reason)
{
    return std::unexpected(Error{std::move(reason)});
}

/// The lines of a body that say something; one empty line when there is none, for the event in the query.
std::vector<std::string_view> linesOf(std::string_view body)
{
    std::vector<std::string_view> lines;
    for (const auto part : std::views::split(body, '\n')) {
        const auto line = trimmed(std::string_view(part));
        if (!line.empty())
            lines.push_back(line);
    }
    if (lines.empty())
        lines.emplace_back();
    return lines;
}

Result<void> addItems(std::string_view text, Items& items)
{
    for (const auto part : std::views::split(text, '&')) {
        const std::string_view item(part);
        if (item.empty())
            continue;
        const auto equals = std::min(item.find('='), item.size());
        auto name = percentDecoded(item.substr(0, equals));
        auto value = percentDecoded(item.substr(std::min(equals + 1, item.size())));
        if (!name || !value)
            return refuse("An item is not well-formed UTF-8 text.");
        if (!items.emplace(*std::move(name), *std::move(value)).second)
            return refuse("An item occurs twice.");
        if (items.size() > CollectRequest::mostItems)
            return refuse(fmt::format("An event has at most {} items.", CollectRequest::mostItems));
    }
    return {};
}

std::string_view valueOf(const Items& items, std::string_view name)
{
    const auto found = items.find(name);
    return found == items.end() ? std::string_view() : std::string_view(found->second);
}

/// An integer where it is one, else a real; nothing for what is no finite number.
std::optional<Json> numberOf(std::string_view text)
{
    if (const auto integer = strictInteger(text))
        return Json(*integer);
    double real = 0;
    const auto* end = std::to_address(text.end());
    const auto [stopped, failure] = std::from_chars(std::to_address(text.begin()), end, real);
    return failure == std::errc() && stopped == end && std::isfinite(real) ? std::optional(Json(real)) : std::nullopt;
}

/// Collects the items "PREFIX.NAME", which are texts, and "PREFIXn.NAME", which are numbers.
Result<Json> namedValues(const Items& items, std::string_view prefix)
{
    Json values = Json::object();
    for (const bool isNumber : {false, true}) {
        const auto start = fmt::format("{}{}.", prefix, isNumber ? "n" : "");
        for (auto item = items.lower_bound(start); item != items.end() && item->first.starts_with(start); ++item) {
            const auto name = item->first.substr(start.size());
            auto value = isNumber ? numberOf(item->second) : std::optional(Json(item->second));
            if (!isWord(name, CollectRequest::longestName) || values.contains(name))
                return refuse(fmt::format("An item \"{}\" has no good name, or its name twice.", start));
            if (!value)
                return refuse(fmt::format("An item \"{}\" is no number.", start));
            values[name] = *std::move(value);
        }
    }
    return values;
}

Result<UsageEvent> eventOf(const Items& items)
{
    UsageEvent event;
    event.measurementId = valueOf(items, "tid");
    event.clientId = valueOf(items, "cid");
    event.name = valueOf(items, "en");
    const auto session = strictInteger(valueOf(items, "sid"));
    const auto sequence = strictInteger(valueOf(items, "_s"));
    if (valueOf(items, "v") != "2")
        return refuse("\"v\" must be 2.");
    if (!CollectRequest::isMeasurementId(event.measurementId))
        return refuse("\"tid\" must be a measurement identifier.");
    if (!isWord(event.clientId, CollectRequest::longestClient))
        return refuse(fmt::format("\"cid\" must be a word of 1 to {} characters.", CollectRequest::longestClient));
    if (!isWord(event.name, CollectRequest::longestName))
        return refuse(fmt::format("\"en\" must be a word of 1 to {} characters.", CollectRequest::longestName));
    if (session.value_or(-1) < 0 || sequence.value_or(0) < 1)
        return refuse("\"sid\" and \"_s\" must be numbers.");
    event.sessionId = *session;
    event.sequence = *sequence;

    auto parameters = namedValues(items, "ep");
    auto properties = namedValues(items, "up");
    if (!parameters || !properties)
        return std::unexpected(parameters ? properties.error() : parameters.error());
    event.parameters = *std::move(parameters);
    event.userProperties = *std::move(properties);
    return event;
}

} // namespace

Result<std::vector<UsageEvent>> CollectRequest::read(std::string_view query, std::string_view body)
{
    if (query.size() + body.size() > longest)
        return refuse(fmt::format("A request has at most {} bytes.", longest));
    const auto lines = linesOf(body);
    if (lines.size() > mostEvents)
        return refuse(fmt::format("A request has at most {} events.", mostEvents));
    Items common;
    if (auto done = addItems(query, common); !done)
        return std::unexpected(done.error());

    std::vector<UsageEvent> events;
    for (const auto line : lines) {
        Items items = common;
        if (auto done = addItems(line, items); !done)
            return std::unexpected(done.error());
        auto event = eventOf(items);
        if (!event)
            return std::unexpected(event.error());
        events.push_back(*std::move(event));
    }
    return events;
}

bool CollectRequest::isMeasurementId(std::string_view text)
{
    static constexpr std::string_view form = "G-xxxxxxxxxx";
    return std::ranges::equal(text, form, [](char c, char expected) {
        const bool isFree = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        return expected == 'x' ? isFree : c == expected;
    });
}

} // namespace corvane::server
