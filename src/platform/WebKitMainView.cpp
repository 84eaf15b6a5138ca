#include "platform/WebKitMainView.h"

#include "platform/WebKitScriptPanel.h"

#include <array>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace corvane {
namespace {

using UserScriptPtr = std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>>;

GObjectPtr<WebKitSettings> mainSettings(const MainViewConfiguration& configuration, Renderer renderer)
{
    auto settings = adopt(webkit_settings_new());
    webkit_settings_set_user_agent(settings.get(), configuration.userAgent.c_str());
    // Quirks would replace the user agent on some hosts.
    webkit_settings_set_enable_site_specific_quirks(settings.get(), FALSE);
    webkit_settings_set_enable_developer_extras(settings.get(), TRUE);
    webkit_settings_set_enable_back_forward_navigation_gestures(settings.get(), FALSE);
    // Windows that scripts open become loads in this view, also without a click.
    webkit_settings_set_javascript_can_open_windows_automatically(settings.get(), TRUE);
    if (renderer == Renderer::software)
        webkit_settings_set_hardware_acceleration_policy(settings.get(), WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    return settings;
}

GObjectPtr<WebKitWebView> makeWebKitView(WebKitWebContext* context, WebKitNetworkSession* session,
                                         WebKitUserContentManager* content, const MainViewConfiguration& configuration,
                                         Renderer renderer)
{
    const auto settings = mainSettings(configuration, renderer);
    return sink(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session", session,
                                             "user-content-manager", content, "settings", settings.get(), nullptr)));
}

void addPageScripts(WebKitUserContentManager* content, const std::vector<PageScript>& scripts)
{
    for (const auto& script : scripts) {
        const auto moment = script.moment == PageScript::Moment::documentStart
                                ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                                : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END;
        const UserScriptPtr userScript(webkit_user_script_new(
            script.source.c_str(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES, moment, nullptr, nullptr));
        webkit_user_content_manager_add_script(content, userScript.get());
    }
}

/// A request that neither the memory cache (which minds only the header that is new each time) nor any other answers.
GObjectPtr<WebKitURIRequest> freshRequest(const Url& url)
{
    auto request = adopt(webkit_uri_request_new(url.text().c_str()));
    if (auto* headers = webkit_uri_request_get_http_headers(request.get())) {
        soup_message_headers_replace(headers, "Cache-Control", "no-cache");
        soup_message_headers_replace(headers, "Pragma", "no-cache");
        soup_message_headers_replace(headers, "X-Corvane-Fresh", fmt::format("{}", g_get_real_time()).c_str());
    }
    return request;
}

class SameViewRequest final : public NewWindowRequest {
public:
    SameViewRequest(WebKitWebView* view, WebKitURIRequest* request) : view_(retain(view)), request_(retain(request)) {}

    std::string address() const override
    {
        const char* address = request_ == nullptr ? nullptr : webkit_uri_request_get_uri(request_.get());
        return address == nullptr ? std::string() : address;
    }

    void loadInSameView() override { webkit_web_view_load_request(view_.get(), request_.get()); }

private:
    GObjectPtr<WebKitWebView> view_;
    GObjectPtr<WebKitURIRequest> request_;
};

} // namespace

WebKitMainView::WebKitMainView(WebKitWebContext* context, WebKitNetworkSession* session,
                               const MainViewConfiguration& configuration, Renderer renderer)
    : content_(adopt(webkit_user_content_manager_new())),
      view_(makeWebKitView(context, session, content_.get(), configuration, renderer)),
      bridge_(content_.get(), configuration, [this](const PageMessage& message) {
          if (delegate_ != nullptr)
              delegate_->messageReceived(message);
      })
{
    addPageScripts(content_.get(), configuration.scripts);
    connectSignals();
}

WebKitMainView::~WebKitMainView() = default;

template <auto method>
void WebKitMainView::connect(const char* signal)
{
    signals_.push_back(SignalConnection::to<method>(view_.get(), signal, this));
}

void WebKitMainView::connectSignals()
{
    connect<&WebKitMainView::loadChanged>("load-changed");
    connect<&WebKitMainView::loadFailed>("load-failed");
    connect<&WebKitMainView::propertyChanged>("notify::uri");
    connect<&WebKitMainView::propertyChanged>("notify::title");
    connect<&WebKitMainView::propertyChanged>("notify::is-loading");
    connect<&WebKitMainView::createRequested>("create");
    connect<&WebKitMainView::dialogRequested>("script-dialog");
    connect<&WebKitMainView::permissionRequested>("permission-request");
    connect<&WebKitMainView::contextMenuRequested>("context-menu");
    connect<&WebKitMainView::processTerminated>("web-process-terminated");
    signals_.push_back(SignalConnection::to<&WebKitMainView::historyChanged>(
        webkit_web_view_get_back_forward_list(view_.get()), "changed", this));
}

void WebKitMainView::load(const Url& url, LoadPolicy policy)
{
    requested_ = url;
    if (policy == LoadPolicy::ignoreCaches)
        webkit_web_view_load_request(view_.get(), freshRequest(url).get());
    else
        webkit_web_view_load_uri(view_.get(), url.text().c_str());
}

void WebKitMainView::goBack()
{
    webkit_web_view_go_back(view_.get());
}

void WebKitMainView::goForward()
{
    webkit_web_view_go_forward(view_.get());
}

/// The engine reloads what its history holds: not a first page whose process died before the answer came.
void WebKitMainView::reload()
{
    if (requested_ && committedAddress().empty())
        load(*requested_, LoadPolicy::useCaches);
    else
        webkit_web_view_reload(view_.get());
}

void WebKitMainView::stopLoading()
{
    webkit_web_view_stop_loading(view_.get());
}

void WebKitMainView::evaluate(std::string_view script)
{
    webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr,
                                        nullptr, nullptr, nullptr, nullptr);
}

bool WebKitMainView::canGoBack() const
{
    return webkit_web_view_can_go_back(view_.get()) != FALSE;
}

bool WebKitMainView::canGoForward() const
{
    return webkit_web_view_can_go_forward(view_.get()) != FALSE;
}

bool WebKitMainView::isLoading() const
{
    return webkit_web_view_is_loading(view_.get()) != FALSE;
}

std::string WebKitMainView::address() const
{
    const char* address = webkit_web_view_get_uri(view_.get());
    return address == nullptr ? std::string() : address;
}

std::string WebKitMainView::title() const
{
    const char* title = webkit_web_view_get_title(view_.get());
    return title == nullptr ? std::string() : title;
}

std::string WebKitMainView::committedAddress() const
{
    auto* shown = webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view_.get()));
    const char* address = shown == nullptr ? nullptr : webkit_back_forward_list_item_get_uri(shown);
    return address == nullptr ? std::string() : address;
}

void WebKitMainView::loadChanged(WebKitLoadEvent event)
{
    if (event == WEBKIT_LOAD_STARTED)
        hasFailedSinceStart_ = false;
    if (delegate_ == nullptr)
        return;
    switch (event) {
    case WEBKIT_LOAD_STARTED:
        delegate_->loadStarted();
        break;
    case WEBKIT_LOAD_REDIRECTED:
        delegate_->loadRedirected();
        break;
    case WEBKIT_LOAD_COMMITTED:
        delegate_->loadCommitted();
        break;
    case WEBKIT_LOAD_FINISHED:
        // The engine sends this after failures too; those have been told already.
        if (!hasFailedSinceStart_)
            delegate_->loadFinished();
        break;
    }
}

/// Answers TRUE: the page that was there stays, instead of the engine's error page.
gboolean WebKitMainView::loadFailed(WebKitLoadEvent /*event*/, char* /*address*/, GError* /*error*/)
{
    hasFailedSinceStart_ = true;
    if (delegate_ != nullptr)
        delegate_->loadFailed();
    return TRUE;
}

void WebKitMainView::propertyChanged(GParamSpec* /*property*/)
{
    if (delegate_ != nullptr)
        delegate_->stateChanged();
}

void WebKitMainView::historyChanged(WebKitBackForwardListItem* /*added*/, gpointer /*removed*/)
{
    if (delegate_ != nullptr)
        delegate_->stateChanged();
}

GtkWidget* WebKitMainView::createRequested(WebKitNavigationAction* action)
{
    if (delegate_ != nullptr)
        delegate_->newWindowRequested(
            std::make_unique<SameViewRequest>(view_.get(), webkit_navigation_action_get_request(action)));
    return nullptr;
}

gboolean WebKitMainView::dialogRequested(WebKitScriptDialog* dialog)
{
    if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM) {
        webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
        return TRUE;
    }
    auto panel = makeScriptPanel(dialog);
    if (delegate_ != nullptr)
        delegate_->panelRequested(std::move(panel));
    return TRUE;
}

gboolean WebKitMainView::permissionRequested(WebKitPermissionRequest* request)
{
    webkit_permission_request_deny(request);
    return TRUE;
}

/// Takes out what leads nowhere here: new windows and downloads.
gboolean WebKitMainView::contextMenuRequested(WebKitContextMenu* menu, WebKitHitTestResult* /*hit*/)
{
    static constexpr std::array leadNowhere{
        WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK_IN_NEW_WINDOW,  WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_LINK_TO_DISK,
        WEBKIT_CONTEXT_MENU_ACTION_OPEN_IMAGE_IN_NEW_WINDOW, WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_IMAGE_TO_DISK,
        WEBKIT_CONTEXT_MENU_ACTION_OPEN_FRAME_IN_NEW_WINDOW, WEBKIT_CONTEXT_MENU_ACTION_OPEN_VIDEO_IN_NEW_WINDOW,
        WEBKIT_CONTEXT_MENU_ACTION_OPEN_AUDIO_IN_NEW_WINDOW, WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_VIDEO_TO_DISK,
        WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_AUDIO_TO_DISK};
    for (const auto action : leadNowhere) {
        for (guint i = webkit_context_menu_get_n_items(menu); i > 0; --i) {
            auto* item = webkit_context_menu_get_item_at_position(menu, i - 1);
            if (webkit_context_menu_item_get_stock_action(item) == action)
                webkit_context_menu_remove(menu, item);
        }
    }
    return FALSE;
}

void WebKitMainView::processTerminated(WebKitWebProcessTerminationReason /*reason*/)
{
    if (delegate_ != nullptr)
        delegate_->webProcessEnded();
}

} // namespace corvane
