#include "platform/WebKitViewFactory.h"

#include "platform/PosixFileStore.h"
#include "platform/WebKitDocumentView.h"
#include "platform/WebKitHiddenPageView.h"
#include "platform/WebKitMainView.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <webkit/webkit.h>

namespace corvane {
namespace {

/// The engine creates its folders for everybody to read: make them first, for this user only.
void makePrivateFolder(const std::filesystem::path& folder)
{
    std::ignore = PosixFileStore().makeFolder(folder);
}

void setLanguages(WebKitWebContext* context, const std::string& locale)
{
    auto full = locale;
    std::ranges::replace(full, '_', '-');
    const auto plain = full.substr(0, full.find('-'));
    const std::vector<const char*> languages{full.c_str(), plain == full ? nullptr : plain.c_str(), nullptr};
    webkit_web_context_set_preferred_languages(context, languages.data());
}

GObjectPtr<WebKitNetworkSession> persistentSession(const Places& places)
{
    makePrivateFolder(places.webData());
    makePrivateFolder(places.cache);
    auto session = adopt(webkit_network_session_new(places.webData().c_str(), places.cache.c_str()));
    const auto cookies = places.webData() / "cookies.sqlite";
    webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session.get()),
                                                 cookies.c_str(), WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    return session;
}

} // namespace

WebKitViewFactory::WebKitViewFactory(const Places& places, std::string locale, Renderer renderer)
    : locale_(std::move(locale)), renderer_(renderer), mainContext_(makeContext()),
      mainSession_(persistentSession(places)), mainDownloads_(cancelDownloads(mainSession_.get()))
{
}

WebKitViewFactory::~WebKitViewFactory() = default;

std::unique_ptr<WebView> WebKitViewFactory::makeMainView(const MainViewConfiguration& configuration)
{
    return std::make_unique<WebKitMainView>(mainContext_.get(), mainSession_.get(), configuration, renderer_);
}

std::unique_ptr<DocumentView> WebKitViewFactory::makeDocumentView()
{
    if (!documentContext_) {
        documentContext_ = makeContext();
        documentSession_ = adopt(webkit_network_session_new_ephemeral());
        documentDownloads_ = cancelDownloads(documentSession_.get());
    }
    return std::make_unique<WebKitDocumentView>(documentContext_.get(), documentSession_.get(), renderer_);
}

std::unique_ptr<HiddenPageView> WebKitViewFactory::makeHiddenPageView(HiddenPageConfiguration configuration)
{
    return std::make_unique<WebKitHiddenPageView>(makeContext(), std::move(configuration));
}

GtkWidget* WebKitViewFactory::widget(const WebView& view)
{
    return static_cast<const WebKitMainView&>(view).widget();
}

GtkWidget* WebKitViewFactory::widget(const DocumentView& view)
{
    return static_cast<const WebKitDocumentView&>(view).widget();
}

GObjectPtr<WebKitWebContext> WebKitViewFactory::makeContext() const
{
    auto context = adopt(webkit_web_context_new());
    setLanguages(context.get(), locale_);
    return context;
}

SignalConnection WebKitViewFactory::cancelDownloads(WebKitNetworkSession* session)
{
    return SignalConnection::to<&WebKitViewFactory::downloadStarted>(session, "download-started", this);
}

/// A page must not put files on the disk unasked.
void WebKitViewFactory::downloadStarted(WebKitDownload* download)
{
    webkit_download_cancel(download);
}

} // namespace corvane
