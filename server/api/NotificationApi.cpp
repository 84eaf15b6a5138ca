#include "api/NotificationApi.h"

#include "api/BodyFields.h"
#include "base/Text.h"

namespace corvane::server {

void NotificationApi::addTo(Router& router)
{
    router.add("GET", "/api/notifications/pending", [this](const auto& request) { return pending(request); });
    router.add("POST", "/api/notifications/ack", [this](const auto& request) { return acknowledge(request); });
}

HttpAnswer NotificationApi::pending(const HttpRequest& request)
{
    const auto installId = request.queryValue("installId");
    if (!installId || !isUuid(*installId))
        return HttpAnswer::error(400, "bad_field", "The query must name one \"installId\", a UUID.");

    auto list = Json::array();
    for (auto& delivery : notifications_.pending(lowercased(*installId))) {
        list.push_back({{"recipientId", delivery.recipientId},
                        {"campaignId", delivery.campaignId},
                        {"title", std::move(delivery.message.title)},
                        {"body", std::move(delivery.message.body)},
                        {"url", std::move(delivery.message.url)}});
    }
    return HttpAnswer::json(200, {{"notifications", std::move(list)}});
}

HttpAnswer NotificationApi::acknowledge(const HttpRequest& request)
{
    BodyFields fields(request);
    const auto installId = fields.installId("installId");
    const auto recipientIds = fields.identifiers("recipientIds", mostAcknowledged);
    if (fields.complaint())
        return *fields.complaint();
    return HttpAnswer::json(200, {{"acked", notifications_.acknowledge(installId, recipientIds, now_())}});
}

} // namespace corvane::server
