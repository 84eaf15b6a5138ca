#pragma once

#include "async/Task.h"
#include "base/Json.h"
#include "base/Published.h"
#include "notifications/PendingNotification.h"
#include "ports/AppInfo.h"
#include "ports/DefaultsStore.h"
#include "ports/Endpoints.h"
#include "ports/HttpClient.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The client of the notification server: registers this installation, binds it to the user's profile, pulls the
/// notifications that wait and acknowledges those that were read. Every failure ends quietly.
///
/// The tasks it hands out may overlap, and destroying one ends it where it is: the last fetch to arrive wins. The
/// object outlives them all. Main thread only.
class PushDeviceManager {
public:
    /// The ports must outlive this object.
    PushDeviceManager(HttpClient& http, DefaultsStore& defaults, const Endpoints& endpoints, const AppInfo& app);

    /// One whole cycle: register, bind, fetch. The number of notifications that wait, or -1 when the fetch failed and
    /// the list stays as it was.
    Task<std::int64_t> refresh();

    /// Tells the server that these recipient ids were read and takes them off the list once it agrees. Ids below 1 are
    /// left out.
    Task<void> acknowledge(std::vector<std::int64_t> ids);
    Task<void> acknowledgeAll();

    /// Keeps a binding token from the registration page, until the server has answered for it, and runs a cycle. A
    /// token that is absent or blank does nothing.
    Task<void> bind(std::optional<std::string> token);

    Url registrationPageURL() const;

    /// The random identifier of this installation; made and stored when first needed.
    std::string installId();

    /// The largest recipient id first.
    const Published<std::vector<PendingNotification>>& pending() const { return pending_; }

private:
    using Answer = Result<HttpResponse>;

    Task<void> registerDevice();
    Task<void> bindDevice();

    /// Empty when the fetch failed.
    Task<std::optional<std::vector<PendingNotification>>> fetchPending();

    Task<Answer> postJSON(Url url, Json body);

    /// An absent or empty token removes the one that is stored.
    void storeBindingToken(std::optional<std::string_view> token);

    HttpClient& http_;
    DefaultsStore& defaults_;
    Url base_;
    std::string appVersionString_; // empty when unknown
    Published<std::vector<PendingNotification>> pending_;
};

} // namespace corvane
