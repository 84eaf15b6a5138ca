#pragma once

#include "api/Now.h"
#include "data/Database.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "http/Router.h"
#include "store/NotificationStore.h"

namespace corvane::server {

/// Hands waiting notifications to an installation and takes its acknowledgements.
class NotificationApi {
public:
    /// The most deliveries that one request acknowledges.
    static constexpr std::size_t mostAcknowledged = 1000;

    NotificationApi(Database& database, Now now) : notifications_(database), now_(std::move(now)) {}

    void addTo(Router& router);

private:
    HttpAnswer pending(const HttpRequest& request);
    HttpAnswer acknowledge(const HttpRequest& request);

    NotificationStore notifications_;
    Now now_;
};

} // namespace corvane::server
