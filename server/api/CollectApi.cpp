#include "api/CollectApi.h"

#include "api/CollectRequest.h"
#include "base/Text.h"
#include "pages/tagJs.h"
#include "publishing/ContentType.h"

namespace corvane::server {
namespace {

HttpAnswer tagScript(const HttpRequest& request)
{
    const auto id = request.queryValue("id");
    if (!id || !CollectRequest::isMeasurementId(*id))
        return HttpAnswer::error(400, "bad_field", "The query must name one \"id\", a measurement identifier.");
    return HttpAnswer::text(contentTypeOf("tag.js"), pages::tagJs).with("Cache-Control", "no-cache");
}

} // namespace

void CollectApi::addTo(Router& router)
{
    for (const auto* method : {"GET", "POST"})
        router.addOpen(method, "/g/collect", [this](const auto& request) { return collect(request); });
    router.addOpen("GET", "/gtag/js", tagScript);
}

HttpAnswer CollectApi::collect(const HttpRequest& request)
{
    auto events = CollectRequest::read(request.query, request.body);
    if (!events)
        return HttpAnswer::error(400, "bad_event", events.error().message);
    for (auto& event : *events) {
        event.receivedAt = now_();
        event.userAgent = safeTitle(repairedUtf8(request.userAgent));
    }
    if (request.method != "HEAD")
        events_.add(*events);
    HttpAnswer answer;
    answer.status = 204;
    return std::move(answer).with("Cache-Control", "no-store");
}

} // namespace corvane::server
