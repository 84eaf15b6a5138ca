#pragma once

#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"
#include "platform/WebKitRefusals.h"
#include "ports/HiddenPageView.h"

#include <memory>

#include <webkit/webkit.h>

namespace corvane {

/// A WebKit view that is never put into a window.
class WebKitHiddenPageView final : public HiddenPageView {
public:
    /// The scheme becomes known in `context`, which must not be anybody else's.
    WebKitHiddenPageView(GObjectPtr<WebKitWebContext> context, HiddenPageConfiguration configuration);
    ~WebKitHiddenPageView() override;

    void load(const Url& url) override;
    void evaluate(std::string_view script) override;

private:
    void messageReceived(JSCValue* value);
    void downloadStarted(WebKitDownload* download);

    // Shared with the engine's handler of the scheme, which may outlive this view.
    std::shared_ptr<const HiddenPageConfiguration> configuration_;
    GObjectPtr<WebKitWebContext> context_;
    GObjectPtr<WebKitNetworkSession> session_;
    GObjectPtr<WebKitUserContentManager> content_;
    GObjectPtr<WebKitWebView> view_;
    WebKitRefusals refusals_;
    SignalConnection messages_;
    SignalConnection downloads_;
};

} // namespace corvane
