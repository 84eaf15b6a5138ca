// Measures what the background checks cost the main thread: a pass with all three checks, answered at once from memory
// and finding everything as it is, and a look at the due times that finds nothing to do.

#include "Timing.h"
#include "platform/FolderResources.h"
#include "refresh/StatusRefreshCoordinator.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWake.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <cstdlib>
#include <memory>

#include <fmt/format.h>

namespace {

using namespace corvane;

/// A program with its checks and servers, all in memory but the shipped resources.
class World {
public:
    World()
    {
        const auto answer = [catalogue = resources_.read("sites", "json").value_or("[]")](const HttpRequest& request) {
            const auto& address = request.url.text();
            if (address.contains("sites.json"))
                return HttpResponse{200, catalogue};
            if (address.contains("whatsnew.html"))
                return HttpResponse{200, "<p>Nothing new.</p>"};
            if (address.contains("index.json"))
                return HttpResponse{200, R"({"archives":[{"file":"1.html","title":"One"}]})"};
            return HttpResponse{200, R"({"notifications":[],"version":"1.0"})"};
        };
        http_.respond = answer;
        coordinator_.start(sites_, app_, settings_);
    }

    /// All three checks, by way of the main queue.
    void runPass()
    {
        clock_.advance(StatusRefreshCoordinator::forceDebounce);
        coordinator_.forceKick();
        queue_.runAll();
    }

    /// A minute in which nothing falls due.
    void passMinute() { clock_.advance(StatusRefreshCoordinator::tickInterval); }

    std::size_t requests() const { return http_.requests().size(); }

private:
    FolderResources resources_ = FolderResources::ofThisProgram();
    testing::ScriptedHttpClient http_;
    testing::ManualClock clock_;
    testing::ManualMainQueue queue_;
    testing::ManualWake wake_;
    testing::MemoryDefaultsStore defaults_;
    testing::MemoryFileStore files_;
    Places places_{.data = "/data", .cache = "/cache", .defaults = "/defaults"};
    Endpoints endpoints_ = testing::endpointsAt();

    PushDeviceManager pushDevices_{http_, defaults_, endpoints_, AppInfo{"1.0", ""}};
    std::shared_ptr<SiteListManager> sites_ =
        std::make_shared<SiteListManager>(files_, resources_, places_, SiteListFetcher(http_, clock_, endpoints_));
    std::shared_ptr<AppUpdateManager> app_ =
        std::make_shared<AppUpdateManager>(http_, clock_, endpoints_, AppInfo{"1.0", ""});
    std::shared_ptr<SettingsManager> settings_ = std::make_shared<SettingsManager>(files_, places_);
    StatusRefreshCoordinator coordinator_{pushDevices_, clock_, queue_, wake_,
                                          [] { return std::uint64_t{1} << 52U; }}; // periods as they are
};

} // namespace

int main()
{
    World world;
    const auto before = world.requests();
    world.runPass();
    const auto requests = world.requests() - before;
    const auto pass = bench::fastest([&] { world.runPass(); });

    // Passes fall due again and again as time goes on; the fastest minute is one without.
    const auto minute = bench::fastest([&] { world.passMinute(); });
    fmt::print("a pass with {} requests: {:.1f} µs\na minute in which nothing is due: {:.2f} µs\n", requests,
               pass.count() / 1e3, minute.count() / 1e3);
    return requests == 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
