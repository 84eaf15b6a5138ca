#pragma once

#include "analytics/AnalyticsManager.h"
#include "browser/WebViewCoordinator.h"
#include "display/EngineWorld.h"
#include "notifications/PushDeviceManager.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// A real main view with the coordinator that decides what its pages may do.
class CoordinatedWorld : public EngineWorld {
public:
    CoordinatedWorld()
    {
        analytics.adoptEnabled(true);
        coordinator.attach(*view);
        view->setDelegate(&told);
        told.next = &coordinator;
        told.messagePassedOn = [this] { carryOut(); };
    }
    CoordinatedWorld(const CoordinatedWorld&) = delete;
    CoordinatedWorld& operator=(const CoordinatedWorld&) = delete;
    ~CoordinatedWorld() { coordinator.detach(); }

    /// What the messages so far have led to, in order: "success", "delete", or "bind" with its token.
    std::vector<std::string> accepted;

    MemoryDefaultsStore defaults;
    FixedHostInfo host;
    ManualClock clock;
    ManualMainQueue queue;
    ScriptedHttpClient http;
    Endpoints endpoints = endpointsAt(server.site() + "/", server.site() + "/");
    AppInfo info{.shortVersion = "1.2"};
    AnalyticsManager analytics{defaults, host, clock, info};
    PushDeviceManager pushDevices{http, defaults, endpoints, info};
    AppState state{defaults, analytics};
    WebViewCoordinator coordinator{state, pushDevices, analytics, hosts, queue, clock};

private:
    void carryOut()
    {
        const auto before = http.requests().size();
        queue.runAll();
        for (const auto& event : analytics.preInitQueue()) {
            if (event.name == "registration_success")
                accepted.emplace_back("success");
            else if (event.name == "profile_deleted")
                accepted.emplace_back("delete");
        }
        if (http.requests().size() > before)
            accepted.push_back("bind " + defaults.string("push_binding_token").value_or(""));
        analytics.setEnabled(false); // forgets the events
        analytics.adoptEnabled(true);
    }
};

} // namespace corvane::testing
