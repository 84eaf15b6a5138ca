#pragma once

#include "analytics/AnalyticsEvent.h"
#include "async/TaskScope.h"
#include "base/BusyFlag.h"
#include "ports/Clock.h"
#include "ports/Endpoints.h"
#include "ports/HostInfo.h"
#include "ports/HttpClient.h"
#include "ports/MainQueue.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace corvane {

/// Sends events straight to the collection service, each as one request in the collect format of Google Analytics 4:
/// everything in the query, no body. Nothing is retried, and nobody hears whether it arrived. Held by a shared pointer;
/// made on any thread, destroyed on the main thread, which ends the requests that still run.
class AnalyticsNativeCollect : public std::enable_shared_from_this<AnalyticsNativeCollect> {
public:
    /// The time that all requests bear as "sid" is now. The first two must outlive this object.
    AnalyticsNativeCollect(HttpClient& http, MainQueue& queue, const Clock& clock, const HostInfo& host,
                           const Endpoints& endpoints);

    /// May be called from any thread; the request starts in a later turn of the main thread.
    void sendEvent(std::string_view name, const AnalyticsParams& params, std::string_view clientId,
                   std::string_view appVersion);

    /// Whether a request that has started waits for its answer. Main thread only.
    const Published<bool>& isSending() const { return busy_.isUp(); }

private:
    std::int64_t nextSequenceNumber();
    Task<void> exchange(HttpRequest request);

    HttpClient& http_;
    MainQueue& queue_;

    // Fixed from the start, so every thread may read them.
    std::string endpoint_; // without query and fragment
    std::string measurementId_;
    std::string language_; // for example "de-ch"
    std::int64_t sessionId_;

    std::mutex lock_; // guards the next one
    std::int64_t hitCount_ = 0;

    BusyFlag busy_;
    TaskScope requests_;
};

} // namespace corvane
