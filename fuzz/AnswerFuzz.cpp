#include "Target.h"
#include "base/Json.h"
#include "notifications/PushDeviceManager.h"
#include "support/MemoryDefaultsStore.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <algorithm>
#include <ranges>

namespace corvane::fuzz {
namespace {

/// An installation whose notification server answers every request with the same bytes.
class Installation {
public:
    explicit Installation(std::string_view bytes) : body(bytes)
    {
        http.respond = [this](const HttpRequest& request) {
            require(request.url.host() == "127.0.0.1", "only the notification server is asked");
            require(request.method == HttpMethod::get || parseJson(request.body), "requests are JSON");
            return HttpResponse{.status = status, .body = body};
        };
    }

    std::int64_t refresh() { return testing::resultOf(manager.refresh()).value(); }

    void acknowledgeAll()
    {
        TaskScope scope;
        scope.start(manager.acknowledgeAll());
    }

    void bind(const std::string& token)
    {
        TaskScope scope;
        scope.start(manager.bind(token));
    }

    int status = 200;
    std::string body;
    testing::ScriptedHttpClient http;
    testing::MemoryDefaultsStore defaults;
    PushDeviceManager manager{http, defaults, endpoints(), AppInfo{.shortVersion = "0.75.0"}};

private:
    static const Endpoints& endpoints()
    {
        static const auto fixed = testing::endpointsAt();
        return fixed;
    }
};

/// Whether the server says that it has acknowledged nothing.
bool refusesToAcknowledge(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    const auto* acked = document ? member(*document, "acked") : nullptr;
    return acked != nullptr && jsonInt(acked) < 1;
}

void requireBinding(Installation& installation, std::string_view bytes)
{
    for (const auto& [status, isSettled] :
         {std::pair{200, true}, {401, true}, {403, true}, {404, false}, {500, false}}) {
        installation.status = status;
        installation.bind(std::string(bytes) + " token");
        require(installation.defaults.string("push_binding_token").has_value() != isSettled,
                "a token stays until its server has answered for it");
    }
}

} // namespace

void readInput(std::string_view bytes)
{
    Installation installation(bytes);
    const auto expected = decodePending(bytes);
    const auto count = installation.refresh();
    require(count == (expected ? static_cast<std::int64_t>(expected->size()) : -1), "a refresh counts what waits");
    const auto pending = installation.manager.pending().value();
    require(pending == expected.value_or(std::vector<PendingNotification>()), "the list is what the server said");

    installation.status = 500;
    require(installation.refresh() == -1 && installation.manager.pending().value() == pending,
            "a server in trouble leaves the list as it is");
    installation.acknowledgeAll();
    require(installation.manager.pending().value() == pending, "nothing is acknowledged by a server in trouble");

    installation.status = 200;
    installation.acknowledgeAll();
    const bool isKept = pending.empty() || refusesToAcknowledge(bytes);
    require(installation.manager.pending().value().empty() == (pending.empty() || !isKept),
            "what is acknowledged leaves the list");

    const auto identifier = installation.manager.installId();
    requireBinding(installation, bytes);
    require(installation.manager.installId() == identifier, "an installation keeps its identifier");
}

} // namespace corvane::fuzz
