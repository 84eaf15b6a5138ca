#include "api/ProfileApi.h"

#include "api/BodyFields.h"
#include "data/Transaction.h"
#include "store/Secret.h"

#include <fmt/format.h>

namespace corvane::server {
namespace {

constexpr std::size_t secretBytes = 32;

/// The longest that browsers keep a cookie.
constexpr std::chrono::days cookieAge{400};

HttpAnswer noProfile()
{
    return HttpAnswer::error(401, "no_profile", "This browser has no profile here.");
}

std::int64_t tokenLifetime()
{
    return std::chrono::seconds(BindingTokenStore::lifetime).count();
}

} // namespace

ProfileApi::ProfileApi(Database& database, Now now)
    : database_(database), profiles_(database), devices_(database), tokens_(database), now_(std::move(now))
{
}

void ProfileApi::addTo(Router& router)
{
    router.add("POST", "/api/profiles", [this](const auto& request) { return create(request); });
    router.add("GET", "/api/profiles/me", [this](const auto& request) { return show(request); });
    router.add("DELETE", "/api/profiles/me", [this](const auto& request) { return remove(request); });
    router.add("POST", "/api/profiles/me/bind", [this](const auto& request) { return issueToken(request); });
}

HttpAnswer ProfileApi::create(const HttpRequest& request)
{
    BodyFields fields(request);
    const auto name = fields.line("name", 1, longestName);
    const auto email = fields.optionalEmail("email");
    if (fields.complaint())
        return *fields.complaint();

    Transaction transaction(database_);
    if (ownProfile(request))
        return HttpAnswer::error(409, "has_profile", "This browser already has a profile here.");
    const auto secret = randomSecret(secretBytes);
    const auto profile = profiles_.add(name, email, secret, now_());
    const auto token = tokens_.issue(profile.id, now_());
    transaction.commit();
    return HttpAnswer::json(201, {{"profileId", profile.id}, {"bindingToken", token}, {"expiresIn", tokenLifetime()}})
        .with("Set-Cookie", cookie(secret, cookieAge));
}

HttpAnswer ProfileApi::show(const HttpRequest& request)
{
    const auto profile = ownProfile(request);
    if (!profile)
        return HttpAnswer::json(200, {{"profile", nullptr}});
    return HttpAnswer::json(200, {{"profile",
                                   {{"profileId", profile->id},
                                    {"name", profile->name},
                                    {"email", profile->email},
                                    {"createdAt", profile->createdAt.time_since_epoch().count()},
                                    {"devices", devices_.boundTo(profile->id).size()}}}});
}

HttpAnswer ProfileApi::issueToken(const HttpRequest& request)
{
    const BodyFields fields(request);
    if (fields.complaint())
        return *fields.complaint();
    Transaction transaction(database_);
    const auto profile = ownProfile(request);
    if (!profile)
        return noProfile();
    const auto token = tokens_.issue(profile->id, now_());
    transaction.commit();
    return HttpAnswer::json(200, {{"bindingToken", token}, {"expiresIn", tokenLifetime()}});
}

HttpAnswer ProfileApi::remove(const HttpRequest& request)
{
    Transaction transaction(database_);
    const auto profile = ownProfile(request);
    if (!profile)
        return noProfile();
    profiles_.remove(profile->id);
    transaction.commit();
    return HttpAnswer::json(200, {{"deleted", true}}).with("Set-Cookie", cookie({}, std::chrono::seconds(0)));
}

std::optional<Profile> ProfileApi::ownProfile(const HttpRequest& request) const
{
    const auto secret = request.cookieValue(cookieName);
    return secret.empty() ? std::nullopt : profiles_.findBySecret(secret);
}

std::string ProfileApi::cookie(std::string_view secret, std::chrono::seconds maxAge) const
{
    return fmt::format("{}={}; Max-Age={}{}", cookieName, secret, maxAge.count(), cookieAttributes_);
}

} // namespace corvane::server
