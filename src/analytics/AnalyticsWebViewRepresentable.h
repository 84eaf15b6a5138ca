#pragma once

#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsRoutes.h"

#include <memory>
#include <utility>

namespace corvane {

/// The hidden page's place in the program. To make it is to start the page and the delivery of events: once, when
/// analytics is on and the program has time. No window shows it, so it has no widget. Main thread only.
class AnalyticsWebViewRepresentable {
public:
    AnalyticsWebViewRepresentable(AnalyticsManager& manager, AnalyticsRoutes routes) : webView_(routes.page)
    {
        manager.startWebView(std::move(routes));
        webView_->setUp();
    }

private:
    std::shared_ptr<AnalyticsWebView> webView_;
};

} // namespace corvane
