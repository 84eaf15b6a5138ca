#pragma once

#include "platform/GLibHandle.h"
#include "platform/RendererChoice.h"
#include "platform/SignalConnection.h"
#include "platform/WebKitRefusals.h"
#include "ports/DocumentView.h"

#include <optional>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace corvane {

/// The WebKit view of release notes and notifications.
class WebKitDocumentView final : public DocumentView {
public:
    WebKitDocumentView(WebKitWebContext* context, WebKitNetworkSession* session, Renderer renderer);
    ~WebKitDocumentView() override;

    GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

    void setLinkRule(LinkRule rule) override;
    void setReaderStyle(std::string_view css) override;
    void show(std::string_view html) override;

private:
    template <auto method>
    void connect(const char* signal);
    bool mayFollow(const DocumentLink& link);
    gboolean policyAsked(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    gboolean navigationAsked(WebKitPolicyDecision* decision, bool isInNewWindow);
    GtkWidget* createRequested(WebKitNavigationAction* action);
    gboolean contextMenuRequested(WebKitContextMenu* menu, WebKitHitTestResult* hit);
    void load(std::string_view html);
    void processTerminated(WebKitWebProcessTerminationReason reason);

    LinkRule rule_;
    std::optional<std::string> html_; // given last
    bool isShownAgain_ = false;       // its process has ended once
    GObjectPtr<WebKitWebView> view_;
    WebKitRefusals refusals_;
    std::vector<SignalConnection> signals_;
};

} // namespace corvane
