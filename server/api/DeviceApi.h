#pragma once

#include "api/Now.h"
#include "data/Database.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "http/Router.h"
#include "store/BindingTokenStore.h"
#include "store/DeviceStore.h"

namespace corvane::server {

/// Registers installations and binds them to profiles.
class DeviceApi {
public:
    static constexpr std::string_view product = "corvane";

    DeviceApi(Database& database, Now now);

    void addTo(Router& router);

private:
    HttpAnswer registerDevice(const HttpRequest& request);
    HttpAnswer bind(const HttpRequest& request);

    Database& database_;
    DeviceStore devices_;
    BindingTokenStore tokens_;
    Now now_;
};

} // namespace corvane::server
