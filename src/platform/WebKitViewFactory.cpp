#include "platform/WebKitViewFactory.h"

#include "platform/WebKitMainView.h"

#include <algorithm>
#include <string>
#include <vector>

#include <glib/gstdio.h>
#include <webkit/webkit.h>

namespace corvane {
namespace {

/// The engine creates its folders for everybody to read: make them first, for this user only.
void makePrivateFolder(const std::filesystem::path& folder)
{
    g_mkdir_with_parents(folder.c_str(), 0700);
    g_chmod(folder.c_str(), 0700);
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

WebKitViewFactory::WebKitViewFactory(const Places& places, const std::string& locale, Renderer renderer)
    : renderer_(renderer), mainContext_(adopt(webkit_web_context_new())), mainSession_(persistentSession(places))
{
    setLanguages(mainContext_.get(), locale);
    downloadStarted_ = SignalConnection::to<&WebKitViewFactory::downloadStarted>(mainSession_.get(), "download-started",
                                                                                 this);
}

WebKitViewFactory::~WebKitViewFactory() = default;

std::unique_ptr<WebView> WebKitViewFactory::makeMainView(const MainViewConfiguration& configuration)
{
    return std::make_unique<WebKitMainView>(mainContext_.get(), mainSession_.get(), configuration, renderer_);
}

GtkWidget* WebKitViewFactory::widget(const WebView& view)
{
    return static_cast<const WebKitMainView&>(view).widget();
}

/// A page must not put files on the disk unasked.
void WebKitViewFactory::downloadStarted(WebKitDownload* download)
{
    webkit_download_cancel(download);
}

} // namespace corvane
