#include "ReferenceServer.h"

#include "api/RegistrationPage.h"

#include <fmt/format.h>

namespace corvane::server {

ReferenceServer::ReferenceServer(Database database, std::filesystem::path publishFolder, const Now& now)
    : database_(std::move(database)), collect_(database_, now), devices_(database_, now),
      notifications_(database_, now), profiles_(database_, now), published_(std::move(publishFolder)),
      store_(published_), http_([this](const HttpRequest& request) { return router_.answer(request); })
{
    collect_.addTo(router_);
    devices_.addTo(router_);
    notifications_.addTo(router_);
    profiles_.addTo(router_);
    store_.addTo(router_);
    RegistrationPage::addTo(router_);
    router_.setFallback([this](const HttpRequest& request) { return published_.answer(request); });
}

Result<Url> ReferenceServer::listen(std::uint16_t port, const std::optional<Url>& publicOrigin)
{
    const auto taken = http_.listen(port);
    if (!taken)
        return std::unexpected(taken.error());
    for (const auto* name : {"127.0.0.1", "localhost"})
        router_.addOrigin(Url::parse(fmt::format("http://{}:{}/", name, *taken)).value());

    auto own = Url::parse(fmt::format("http://127.0.0.1:{}/", *taken)).value();
    if (publicOrigin) {
        router_.addOrigin(*publicOrigin);
        if (publicOrigin->scheme() == "https")
            profiles_.requireSecureCookies();
    }
    published_.setBase(publicOrigin.value_or(own).origin() + "/");
    return own;
}

} // namespace corvane::server
