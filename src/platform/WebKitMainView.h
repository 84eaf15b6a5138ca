#pragma once

#include "platform/GLibHandle.h"
#include "platform/RendererChoice.h"
#include "platform/SignalConnection.h"
#include "platform/WebKitPageBridge.h"
#include "ports/WebView.h"

#include <optional>
#include <vector>

#include <webkit/webkit.h>

namespace corvane {

/// The WebKit view that shows services.
class WebKitMainView final : public WebView {
public:
    WebKitMainView(WebKitWebContext* context, WebKitNetworkSession* session, const MainViewConfiguration& configuration,
                   Renderer renderer);
    ~WebKitMainView() override;

    GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

    void setDelegate(WebViewDelegate* delegate) override { delegate_ = delegate; }
    void load(const Url& url, LoadPolicy policy) override;
    void goBack() override;
    void goForward() override;
    void reload() override;
    void stopLoading() override;
    void evaluate(std::string_view script) override;
    bool canGoBack() const override;
    bool canGoForward() const override;
    bool isLoading() const override;
    std::string address() const override;
    std::string title() const override;
    std::string committedAddress() const override;

private:
    template <auto method>
    void connect(const char* signal);
    void connectSignals();

    void loadChanged(WebKitLoadEvent event);
    gboolean loadFailed(WebKitLoadEvent event, char* address, GError* error);
    void propertyChanged(GParamSpec* property);
    void historyChanged(WebKitBackForwardListItem* added, gpointer removed);
    GtkWidget* createRequested(WebKitNavigationAction* action);
    gboolean dialogRequested(WebKitScriptDialog* dialog);
    gboolean permissionRequested(WebKitPermissionRequest* request);
    gboolean contextMenuRequested(WebKitContextMenu* menu, WebKitHitTestResult* hit);
    void processTerminated(WebKitWebProcessTerminationReason reason);

    WebViewDelegate* delegate_ = nullptr;
    bool hasFailedSinceStart_ = false;
    std::optional<Url> requested_; // the address loaded last
    GObjectPtr<WebKitUserContentManager> content_;
    GObjectPtr<WebKitWebView> view_;
    WebKitPageBridge bridge_;
    std::vector<SignalConnection> signals_;
};

} // namespace corvane
