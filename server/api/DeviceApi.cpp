#include "api/DeviceApi.h"

#include "api/BodyFields.h"
#include "data/Transaction.h"

namespace corvane::server {
namespace {

constexpr std::size_t longestWord = 64;
constexpr std::size_t longestToken = 256;

} // namespace

DeviceApi::DeviceApi(Database& database, Now now)
    : database_(database), devices_(database), tokens_(database), now_(std::move(now))
{
}

void DeviceApi::addTo(Router& router)
{
    router.add("POST", "/api/devices/register", [this](const auto& request) { return registerDevice(request); });
    router.add("POST", "/api/devices/bind", [this](const auto& request) { return bind(request); });
}

HttpAnswer DeviceApi::registerDevice(const HttpRequest& request)
{
    BodyFields fields(request);
    Device device;
    device.installId = fields.installId("installId");
    device.platform = fields.word("platform", longestWord);
    device.product = fields.word("product", longestWord);
    device.appVersion = fields.line("appVersion", 0, longestWord);
    if (fields.complaint())
        return *fields.complaint();
    if (device.product != product)
        return HttpAnswer::error(400, "unknown_product", "This server does not serve that product.");

    devices_.put(device, now_());
    return HttpAnswer::json(200, {{"registered", true}});
}

HttpAnswer DeviceApi::bind(const HttpRequest& request)
{
    BodyFields fields(request);
    const auto installId = fields.installId("installId");
    fields.word("platform", longestWord);
    const auto token = fields.word("bindingToken", longestToken);
    if (fields.complaint())
        return *fields.complaint();

    Transaction transaction(database_);
    const auto profile = tokens_.profileOf(token, now_());
    if (!profile)
        return HttpAnswer::error(403, "bad_token", "The binding token is unknown, already used or expired.");
    if (!devices_.isRegistered(installId))
        return HttpAnswer::error(404, "unknown_device", "This installation has to register first.");
    devices_.bind(installId, *profile);
    tokens_.spend(token);
    transaction.commit();
    return HttpAnswer::json(200, {{"bound", true}});
}

} // namespace corvane::server
