#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "notifications/PendingNotification.h"

#include <algorithm>

namespace corvane::fuzz {
namespace {

std::string answerWith(const std::vector<PendingNotification>& pending)
{
    auto elements = Json::array();
    for (const auto& [recipient, campaign, title, body, url] : pending)
        elements.push_back({{"recipientId", recipient},
                            {"campaignId", std::to_string(campaign)},
                            {"title", title},
                            {"body", body},
                            {"url", url}});
    return compactJson({{"notifications", std::move(elements)}});
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto pending = decodePending(bytes);
    const auto document = parseJson(bytes);
    require(pending.has_value() == document.has_value(), "any JSON, and nothing else, is an answer");
    if (!pending)
        return;

    const auto* elements = member(*document, "notifications");
    require(pending->size() <= (elements == nullptr ? 0 : elements->size()), "nothing is read that is not there");
    for (const auto& [recipient, campaign, title, body, url] : *pending) {
        require(recipient >= 1, "a notification has a recipient");
        require(isValidUtf8(title) && isValidUtf8(body) && isValidUtf8(url), "texts are UTF-8");
    }
    require(std::ranges::is_sorted(*pending, std::ranges::greater(), &PendingNotification::recipientId),
            "the largest recipient comes first");
    require(decodePending(answerWith(*pending)) == pending, "a list that is written is read again");
}

} // namespace corvane::fuzz
