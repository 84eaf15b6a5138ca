#pragma once

#include "analytics/AnalyticsNativeCollect.h"
#include "analytics/AnalyticsWebView.h"
#include "ports/MainQueue.h"

#include <functional>
#include <memory>

namespace corvane {

/// The two ways by which events leave the program.
struct AnalyticsRoutes {
    std::shared_ptr<AnalyticsWebView> page;

    /// Makes the direct way. Called once, at the first event that goes there, on the thread that records it.
    std::function<std::shared_ptr<AnalyticsNativeCollect>()> makeNativeCollect;

    MainQueue& queue; // must outlive whoever has the routes
};

} // namespace corvane
