#pragma once

#include "platform/GLibHandle.h"
#include "platform/RendererChoice.h"
#include "platform/SignalConnection.h"
#include "ports/DocumentView.h"
#include "ports/HiddenPageView.h"
#include "ports/Places.h"
#include "ports/WebView.h"

#include <memory>
#include <string>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitDownload WebKitDownload;
typedef struct _WebKitNetworkSession WebKitNetworkSession;
typedef struct _WebKitWebContext WebKitWebContext;

namespace corvane {

/// Makes WebKit views, each kind with the settings of its profile and an engine context and storage of its own; those
/// of the main view are opened at once, the others when they are first needed. The toolkit must have been started.
class WebKitViewFactory final : public MainViewFactory, public DocumentViewFactory, public HiddenPageViewFactory {
public:
    /// `locale` as HostInfo gives it: pages are asked for in that language.
    WebKitViewFactory(const Places& places, std::string locale, Renderer renderer);
    ~WebKitViewFactory() override;

    std::unique_ptr<WebView> makeMainView(const MainViewConfiguration& configuration) override;
    std::unique_ptr<DocumentView> makeDocumentView() override;
    std::unique_ptr<HiddenPageView> makeHiddenPageView(HiddenPageConfiguration configuration) override;

    /// The widget that shows a view made here. It belongs to the view.
    static GtkWidget* widget(const WebView& view);
    static GtkWidget* widget(const DocumentView& view);

private:
    GObjectPtr<WebKitWebContext> makeContext() const;
    SignalConnection cancelDownloads(WebKitNetworkSession* session);
    void downloadStarted(WebKitDownload* download);

    std::string locale_;
    Renderer renderer_;
    GObjectPtr<WebKitWebContext> mainContext_;
    GObjectPtr<WebKitNetworkSession> mainSession_;
    SignalConnection mainDownloads_;
    GObjectPtr<WebKitWebContext> documentContext_; // null until the first document view
    GObjectPtr<WebKitNetworkSession> documentSession_;
    SignalConnection documentDownloads_;
};

} // namespace corvane
