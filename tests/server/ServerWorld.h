#pragma once

#include "ReferenceServer.h"
#include "base/Json.h"
#include "server/TemporaryFolder.h"
#include "support/ManualClock.h"

#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace corvane::server::testing {

/// What came back for a request.
struct Reply {
    unsigned status = 0;
    std::map<std::string, std::string> headers; // names in lower case
    std::string body;

    Json json() const { return parseJson(body).value_or(Json()); }
    std::string error() const { return json().value("error", ""); }
};

/// A whole server on a free port of this machine with a database file and a published folder of its own, and a client
/// on the same main loop.
class ServerWorld : public ::testing::Test {
protected:
    static constexpr const char* installId = "0c7d3d3e-5b0a-4a6e-9f3c-1a2b3c4d5e6f";
    static constexpr const char* otherInstallId = "1c7d3d3e-5b0a-4a6e-9f3c-1a2b3c4d5e6f";

    using Headers = std::map<std::string, std::string>;

    ServerWorld();

    /// `path` begins with "/". Does not follow redirects.
    Reply send(const std::string& method, const std::string& path, const std::string& body = {},
               const Headers& headers = {});
    Reply get(const std::string& path, const Headers& headers = {}) { return send("GET", path, {}, headers); }

    /// POST with a body of JSON.
    Reply post(const std::string& path, const Json& body, Headers headers = {});

    // Steps that many tests begin with; each expects success.
    void registerDevice(const std::string& id = installId);
    struct Owner {
        Headers cookie;
        std::string bindingToken;
    };
    Owner makeProfile(const std::string& name);
    Reply bind(const std::string& token, const std::string& id = installId);
    Json pending(const std::string& id = installId);

    std::string origin() const { return address_->origin(); }
    Now now();

    corvane::testing::ManualClock clock_;
    TemporaryFolder data_;
    TemporaryFolder publish_;
    Database database_; // a second way to the server's file, as a command has it
    ReferenceServer server_;
    std::optional<Url> address_;
};

} // namespace corvane::server::testing
