#pragma once

#include "platform/GLibHandle.h"
#include "platform/RendererChoice.h"
#include "platform/SignalConnection.h"
#include "ports/Places.h"
#include "ports/WebView.h"

#include <memory>
#include <string>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitDownload WebKitDownload;
typedef struct _WebKitNetworkSession WebKitNetworkSession;
typedef struct _WebKitWebContext WebKitWebContext;

namespace corvane {

/// Makes WebKit views, each kind with the settings of its profile. The toolkit must have been started.
class WebKitViewFactory final : public MainViewFactory {
public:
    /// `locale` as HostInfo gives it: pages are asked for in that language.
    WebKitViewFactory(const Places& places, const std::string& locale, Renderer renderer);
    ~WebKitViewFactory() override;

    std::unique_ptr<WebView> makeMainView(const MainViewConfiguration& configuration) override;

    /// The widget that shows a view made here. It belongs to the view.
    static GtkWidget* widget(const WebView& view);

private:
    void downloadStarted(WebKitDownload* download);

    Renderer renderer_;
    GObjectPtr<WebKitWebContext> mainContext_;
    GObjectPtr<WebKitNetworkSession> mainSession_;
    SignalConnection downloadStarted_;
};

} // namespace corvane
