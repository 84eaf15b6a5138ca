#pragma once

#include "analytics/AnalyticsRoutes.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryResources.h"
#include "support/ScriptedHiddenPage.h"
#include "support/ScriptedHttpClient.h"
#include "support/ScriptedLoopbackServer.h"
#include "support/TestEndpoints.h"

#include <memory>

#include <gtest/gtest.h>

namespace corvane {

/// What the analytics works with, and its page host over a page that a test speaks for.
struct AnalyticsWorld : ::testing::Test {
    AnalyticsWorld()
    {
        endpoints.measurementId = "G-A1B2C3D4E5";
        endpoints.collect = Url::parse("https://collect.test/g/collect").value();
        resources.files["analytics_webview.html"] = "<p>__GA4_DEBUG_MODE__ __GA4_DEBUG_MODE__</p>";
    }

    std::shared_ptr<AnalyticsNativeCollect> makeNativeCollect()
    {
        return std::make_shared<AnalyticsNativeCollect>(http, queue, clock, host, endpoints);
    }

    /// The page speaks, and everybody has heard it.
    void say(const std::string& type)
    {
        page.say(type);
        queue.runAll();
    }

    testing::ScriptedHttpClient http;
    testing::ManualMainQueue queue;
    testing::ManualClock clock;
    testing::FixedHostInfo host;
    testing::MemoryDefaultsStore defaults;
    testing::MemoryResources resources;
    Endpoints endpoints = testing::endpointsAt();
    testing::ScriptedHiddenPage page;
    testing::ScriptedLoopbackServer server;
    std::shared_ptr<AnalyticsWebView> webView = std::make_shared<AnalyticsWebView>(AnalyticsWebView::Parts{
        .views = page, .server = server, .resources = resources, .endpoints = endpoints, .queue = queue});
};

} // namespace corvane
