#include "notifications/PushDeviceManager.h"

#include "base/Text.h"
#include "base/Uuid.h"

#include <algorithm>
#include <utility>

namespace corvane {
namespace {

constexpr std::string_view installIdKey = "push_install_id";
constexpr std::string_view bindingTokenKey = "push_binding_token";

/// The client family whose protocol the servers speak.
constexpr std::string_view platform = "macos";

/// How many of `sent` ids the server says it has acknowledged; all of them where it says nothing readable.
std::int64_t acknowledgedCount(std::string_view body, std::size_t sent)
{
    const auto document = parseJson(body);
    const auto* acked = document ? member(*document, "acked") : nullptr;
    return acked == nullptr ? static_cast<std::int64_t>(sent) : jsonInt(acked);
}

/// Whether an answer to the bind request settles the fate of its token, for good or ill.
bool settlesBinding(const HttpResponse& response)
{
    return response.isSuccess() || response.status == 401 || response.status == 403;
}

/// The ids that can be acknowledged, sorted, each once.
std::vector<std::int64_t> acknowledgeable(std::vector<std::int64_t> ids)
{
    std::erase_if(ids, [](std::int64_t id) { return id < 1; });
    std::ranges::sort(ids);
    const auto repeated = std::ranges::unique(ids);
    ids.erase(repeated.begin(), repeated.end());
    return ids;
}

} // namespace

PushDeviceManager::PushDeviceManager(HttpClient& http, DefaultsStore& defaults, const Endpoints& endpoints,
                                     const AppInfo& app)
    : http_(http), defaults_(defaults), base_(endpoints.notification), appVersionString_(app.shortVersion)
{
}

Task<std::int64_t> PushDeviceManager::refresh()
{
    co_await registerDevice();
    co_await bindDevice();
    auto fetched = co_await fetchPending();
    if (!fetched)
        co_return -1;
    const auto count = static_cast<std::int64_t>(fetched->size());
    pending_.set(*std::move(fetched));
    co_return count;
}

Task<void> PushDeviceManager::acknowledge(std::vector<std::int64_t> ids)
{
    const auto sent = acknowledgeable(std::move(ids));
    if (sent.empty())
        co_return;
    Json body = {{"installId", installId()}, {"recipientIds", sent}};
    const auto answer = co_await postJSON(Endpoints::below(base_, "api/notifications/ack"), std::move(body));
    if (!answer || !answer->isSuccess() || acknowledgedCount(answer->body, sent.size()) < 1)
        co_return;
    auto rest = pending_.value();
    std::erase_if(rest, [&sent](const PendingNotification& notification) {
        return std::ranges::binary_search(sent, notification.recipientId);
    });
    pending_.set(std::move(rest));
}

Task<void> PushDeviceManager::acknowledgeAll()
{
    std::vector<std::int64_t> ids;
    for (const auto& notification : pending_.value())
        ids.push_back(notification.recipientId);
    co_await acknowledge(std::move(ids));
}

Task<void> PushDeviceManager::bind(std::optional<std::string> token)
{
    const auto text = trimmed(token ? std::string_view(*token) : std::string_view());
    if (text.empty())
        co_return;
    storeBindingToken(text);
    co_await refresh();
}

Url PushDeviceManager::registrationPageURL() const
{
    std::string path = "registration.html?os=macos";
    if (!appVersionString_.empty())
        path += "&version=" + percentEncodedForQuery(appVersionString_);
    return Endpoints::below(base_, path);
}

std::string PushDeviceManager::installId()
{
    if (auto stored = defaults_.string(installIdKey); stored && !stored->empty())
        return *std::move(stored);
    auto fresh = randomUuid();
    defaults_.setString(installIdKey, fresh);
    return fresh;
}

Task<void> PushDeviceManager::registerDevice()
{
    Json body = {
        {"installId", installId()},
        {"platform", platform},
        {"product", "corvane"},
        {"appVersion", appVersionString_},
    };
    // Every cycle registers anew, whatever the server says.
    co_await postJSON(Endpoints::below(base_, "api/devices/register"), std::move(body));
}

Task<void> PushDeviceManager::bindDevice()
{
    const auto token = defaults_.string(bindingTokenKey);
    if (!token || token->empty())
        co_return;
    Json body = {{"installId", installId()}, {"platform", platform}, {"bindingToken", *token}};
    const auto answer = co_await postJSON(Endpoints::below(base_, "api/devices/bind"), std::move(body));
    // The page may have handed over a newer token meanwhile: that one has not been answered for.
    if (answer && settlesBinding(*answer) && defaults_.string(bindingTokenKey) == token)
        storeBindingToken(std::nullopt);
}

Task<std::optional<std::vector<PendingNotification>>> PushDeviceManager::fetchPending()
{
    const auto path = "api/notifications/pending?installId=" + percentEncodedComponent(installId());
    HttpRequest request{.url = Endpoints::below(base_, path), .headers = {{"Accept", "application/json"}}};
    const auto answer = co_await http_.send(std::move(request));
    if (!answer || !answer->isSuccess())
        co_return std::nullopt;
    co_return decodePending(answer->body);
}

Task<PushDeviceManager::Answer> PushDeviceManager::postJSON(Url url, Json body)
{
    HttpRequest request{
        .url = std::move(url),
        .method = HttpMethod::post,
        .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
        .body = compactJson(body),
    };
    auto answer = co_await http_.send(std::move(request));
    co_return answer;
}

void PushDeviceManager::storeBindingToken(std::optional<std::string_view> token)
{
    if (token && !token->empty())
        defaults_.setString(bindingTokenKey, *token);
    else
        defaults_.remove(bindingTokenKey);
}

} // namespace corvane
