#pragma once

#include "api/Now.h"
#include "data/Database.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "http/Router.h"
#include "store/BindingTokenStore.h"
#include "store/DeviceStore.h"
#include "store/ProfileStore.h"

#include <optional>
#include <string>

namespace corvane::server {

/// What the registration page asks of the server. A browser owns at most one profile; it proves so with a cookie that
/// no script can read and no other site can make it send.
class ProfileApi {
public:
    static constexpr const char* cookieName = "corvane_profile";
    static constexpr std::size_t longestName = 80;

    ProfileApi(Database& database, Now now);

    /// Cookies are then sent over https only.
    void requireSecureCookies() { cookieAttributes_ += "; Secure"; }

    void addTo(Router& router);

private:
    HttpAnswer create(const HttpRequest& request);
    HttpAnswer show(const HttpRequest& request);
    HttpAnswer issueToken(const HttpRequest& request);
    HttpAnswer remove(const HttpRequest& request);

    std::optional<Profile> ownProfile(const HttpRequest& request) const;
    std::string cookie(std::string_view secret, std::chrono::seconds maxAge) const;

    Database& database_;
    ProfileStore profiles_;
    DeviceStore devices_;
    BindingTokenStore tokens_;
    Now now_;
    std::string cookieAttributes_ = "; Path=/api/profiles; HttpOnly; SameSite=Strict";
};

} // namespace corvane::server
