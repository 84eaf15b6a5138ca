#pragma once

#include "catalogue/SiteListManager.h"
#include "network/FaultyServer.h"
#include "notifications/PushDeviceManager.h"
#include "platform/GlibMainQueue.h"
#include "platform/SoupHttpClient.h"
#include "refresh/StatusRefreshCoordinator.h"
#include "settings/SettingsManager.h"
#include "support/ManualClock.h"
#include "support/ManualWake.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/TestEndpoints.h"
#include "updates/AppUpdateManager.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace corvane::testing {

/// A client that counts what it is waiting for and remembers what came of each path.
class WatchedHttpClient final : public HttpClient {
public:
    explicit WatchedHttpClient(HttpClient& inner) : inner_(inner) {}

    Task<Result<HttpResponse>> send(HttpRequest request) override;
    Task<Result<int>> download(Url url, ByteSink* sink, DownloadObserver observer) override;

    int waiting = 0;
    std::uint64_t failures = 0;
    std::map<std::string, Result<HttpResponse>> latest; // by path, since somebody cleared it

private:
    HttpClient& inner_;
};

/// The scheduler with everything that it drives, a real client, and a server that fails one request in three, each time
/// in another way; the clock runs as fast as the checks are done. Checks when each check comes back.
class SoakWorld {
public:
    explicit SoakWorld(unsigned seed);

    /// Lets this much time pass, in ticks of the scheduler. False when a pass does not end.
    [[nodiscard]] bool live(std::chrono::hours time);

    /// Checks that came at another time than they should have; at most ten are told.
    const std::vector<std::string>& surprises() const { return surprises_; }

    std::uint64_t requests() const { return requests_; }
    std::uint64_t failedRequests() const { return http_.failures; }
    std::array<std::uint64_t, 3> checks() const;

private:
    using TimePoint = Clock::TimePoint;

    /// One of the three checks: what shows that it ran and whether it came to anything.
    struct Check {
        std::string name, path;
        std::chrono::seconds interval;
        std::uint64_t runs = 0;
        TimePoint earliest = {}; // the next run
        TimePoint latest = {};
    };

    RawServer::Reply answer(const std::string& request);
    bool hasSucceeded(const Check& check, const Result<HttpResponse>& response) const;
    void tick();
    void examine(Check& check, TimePoint now);
    [[nodiscard]] bool settle();

    std::mt19937_64 random_;
    std::vector<Fault> faults_;
    std::map<std::string, std::string> documents_;
    std::uint64_t requests_ = 0;
    RawServer server_;
    SoupHttpClient client_{"1", HttpLimits{.jsonBody = 4096, .pageBody = 8192}};
    WatchedHttpClient http_{client_};

    Endpoints endpoints_;
    Places places_{.data = "/data", .cache = "/cache", .defaults = "/defaults"};
    ManualClock clock_;
    GlibMainQueue queue_;
    ManualWake wake_;
    MemoryDefaultsStore defaults_;
    MemoryFileStore files_;
    MemoryResources resources_;
    PushDeviceManager devices_;
    std::shared_ptr<SiteListManager> sites_;
    std::shared_ptr<AppUpdateManager> app_;
    std::shared_ptr<SettingsManager> settings_;
    std::array<Check, 3> checks_;
    std::vector<std::string> surprises_;
    StatusRefreshCoordinator coordinator_;
};

} // namespace corvane::testing
