#pragma once

#include "api/Now.h"
#include "data/Database.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "http/Router.h"
#include "store/EventStore.h"

namespace corvane::server {

/// Collects usage events, from the application itself and from pages of every origin that run the tag script, and
/// serves that script.
class CollectApi {
public:
    CollectApi(Database& database, Now now) : events_(database), now_(std::move(now)) {}

    void addTo(Router& router);

private:
    HttpAnswer collect(const HttpRequest& request);

    EventStore events_;
    Now now_;
};

} // namespace corvane::server
