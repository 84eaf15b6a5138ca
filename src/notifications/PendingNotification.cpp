#include "notifications/PendingNotification.h"

#include "base/Text.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

namespace corvane {
namespace {

/// A member that older servers name with an underscore. A member of the newer name counts even when it is null.
std::int64_t identifierOf(const Json& element, std::string_view name, std::string_view olderName)
{
    const auto* value = member(element, name);
    return jsonInt(value != nullptr ? value : member(element, olderName));
}

} // namespace

std::int64_t jsonInt(const Json* value)
{
    if (value == nullptr)
        return 0;
    if (const auto* text = textOf(value))
        return strictInteger(*text).value_or(0);
    return integerOf(*value).value_or(0);
}

std::string jsonString(const Json* value)
{
    const auto* text = textOf(value);
    return text == nullptr ? std::string() : *text;
}

std::optional<PendingNotification> decodeNotification(const Json& element)
{
    const auto recipientId = identifierOf(element, "recipientId", "recipient_id");
    if (recipientId < 1)
        return std::nullopt;
    return PendingNotification{
        .recipientId = recipientId,
        .campaignId = identifierOf(element, "campaignId", "campaign_id"),
        .title = jsonString(member(element, "title")),
        .body = jsonString(member(element, "body")),
        .url = jsonString(member(element, "url")),
    };
}

std::optional<std::vector<PendingNotification>> decodePending(std::string_view body)
{
    const auto document = parseJson(body);
    if (!document)
        return std::nullopt;

    const auto* elements = member(*document, "notifications");
    const bool isList = elements != nullptr && elements->is_array() &&
                        std::ranges::all_of(*elements, [](const Json& element) { return element.is_object(); });
    if (!isList)
        return std::vector<PendingNotification>();

    std::multimap<std::int64_t, PendingNotification, std::greater<>> byRecipient; // equal ones stay in order
    for (const auto& element : *elements) {
        auto notification = decodeNotification(element);
        if (!notification)
            continue;
        const auto recipientId = notification->recipientId;
        byRecipient.emplace(recipientId, *std::move(notification));
    }
    std::vector<PendingNotification> pending;
    pending.reserve(byRecipient.size());
    for (auto& [recipientId, notification] : byRecipient)
        pending.push_back(std::move(notification));
    return pending;
}

} // namespace corvane
