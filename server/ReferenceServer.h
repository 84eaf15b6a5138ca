#pragma once

#include "api/CollectApi.h"
#include "api/DeviceApi.h"
#include "api/NotificationApi.h"
#include "api/Now.h"
#include "api/ProfileApi.h"
#include "api/StoreApi.h"
#include "base/Error.h"
#include "base/Url.h"
#include "data/Database.h"
#include "http/HttpServer.h"
#include "http/Router.h"
#include "publishing/PublishedFolder.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace corvane::server {

/// The whole server: its roles over one database and one published folder, behind one port of this machine.
class ReferenceServer {
public:
    ReferenceServer(Database database, std::filesystem::path publishFolder, const Now& now);

    /// Starts to listen on 127.0.0.1; port 0 takes a free one. `publicOrigin` is the address of a proxy in front of
    /// this server, when there is one. The address for clients on this machine, or why the port cannot be had.
    Result<Url> listen(std::uint16_t port, const std::optional<Url>& publicOrigin);

private:
    Database database_;
    CollectApi collect_;
    DeviceApi devices_;
    NotificationApi notifications_;
    ProfileApi profiles_;
    PublishedFolder published_;
    StoreApi store_;
    Router router_;
    HttpServer http_; // last: its connections end before what answers them
};

} // namespace corvane::server
