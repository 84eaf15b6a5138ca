#pragma once

#include "analytics/AnalyticsURLSchemeHandler.h"
#include "base/Json.h"
#include "ports/Endpoints.h"
#include "ports/HiddenPageView.h"
#include "ports/LoopbackServer.h"
#include "ports/MainQueue.h"
#include "ports/Resources.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Hosts the hidden page that runs the analytics tag: serves it, carries messages to it and turns its messages back
/// into three signals. Held by a shared pointer, made and destroyed on the main thread; every call that comes later
/// holds it weakly. The lock is never held while calling another component.
class AnalyticsWebView : public std::enable_shared_from_this<AnalyticsWebView> {
public:
    /// What the host works with. All must outlive it.
    struct Parts {
        HiddenPageViewFactory& views;
        LoopbackServer& server;
        const Resources& resources;
        const Endpoints& endpoints;
        MainQueue& queue;
    };

    /// What the page has said. Called on the main thread, in a turn of their own; each may be empty.
    struct Signals {
        std::function<void()> onReady;      // once: the page takes messages
        std::function<void()> onConfigured; // what was sent before has been handed to the page
        std::function<void()> onCollectVerified;
    };

    explicit AnalyticsWebView(const Parts& parts);

    /// Makes the hidden view and starts loading the page, the first time only. Main thread only.
    ///
    /// The page comes from the loopback server or, when that does not start, under the custom scheme. Without a page
    /// resource nothing is loaded. A page that fails to load, or whose process ends, is not retried.
    void setUp();

    void setSignals(Signals signals);
    bool isReady() const;

    /// Sends one JSON object to the page; until the page is ready, it waits. An object with text that is not UTF-8 or
    /// with a number that JSON does not know is dropped. May be called from any thread.
    void sendMessage(const Json& object);

    /// Hands the page what waits, in order.
    void flushPendingMessages();
    void dropPendingMessages();

    /// Takes one message of the page as JSON; what it does not know it ignores. Main thread only.
    void handleMessage(const std::string& body);

private:
    using Signal = std::function<void()> Signals::*;

    std::optional<std::string> loadPageResource() const;
    HiddenPageConfiguration configuration();
    void postToPage(std::string message);
    void postSignal(Signal signal);
    std::function<void()> signal(Signal signal) const;
    void becomeReady();

    Parts parts_;
    std::shared_ptr<AnalyticsURLSchemeHandler> schemeHandler_ = std::make_shared<AnalyticsURLSchemeHandler>();

    mutable std::mutex lock_; // guards the next three
    bool isReady_ = false;
    std::vector<std::string> pendingMessages_; // JSON
    Signals signals_;

    std::unique_ptr<HiddenPageView> webView_; // main thread only; null until `setUp`
};

} // namespace corvane
