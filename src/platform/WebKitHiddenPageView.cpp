#include "platform/WebKitHiddenPageView.h"

#include "platform/WebKitFeature.h"

#include <string>
#include <utility>

namespace corvane {
namespace {

constexpr std::size_t longestMessage = std::size_t{64} * 1024;

using WeakConfiguration = std::weak_ptr<const HiddenPageConfiguration>;

GObjectPtr<WebKitSettings> hiddenPageSettings()
{
    auto settings = adopt(webkit_settings_new());
    webkit_settings_set_enable_developer_extras(settings.get(), FALSE);
    webkit_settings_set_enable_fullscreen(settings.get(), FALSE);
    webkit_settings_set_hardware_acceleration_policy(settings.get(), WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    // Without this the timers of a page that is in no window run once a second.
    setFeature(settings.get(), "HiddenPageDOMTimerThrottling", FeatureState::off);
    setFeature(settings.get(), "DOMTimersThrottling", FeatureState::off);
    return settings;
}

GObjectPtr<WebKitWebView> makeWebKitView(WebKitWebContext* context, WebKitNetworkSession* session,
                                         WebKitUserContentManager* content)
{
    const auto settings = hiddenPageSettings();
    return sink(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session", session,
                                             "user-content-manager", content, "settings", settings.get(), "is-muted",
                                             TRUE, nullptr)));
}

void fail(WebKitURISchemeRequest* request, const SchemeFailure& failure)
{
    const auto error = adopt(
        g_error_new_literal(g_quark_from_string(failure.domain.c_str()), failure.code, "The page is not available"));
    webkit_uri_scheme_request_finish_error(request, error.get());
}

void finish(WebKitURISchemeRequest* request, std::string_view page)
{
    const auto bytes = adopt(g_bytes_new(page.data(), page.size()));
    const auto stream = adopt(g_memory_input_stream_new_from_bytes(bytes.get()));
    webkit_uri_scheme_request_finish(request, stream.get(), static_cast<gint64>(page.size()),
                                     "text/html; charset=utf-8");
}

void answerRequest(WebKitURISchemeRequest* request, gpointer data)
{
    const auto configuration = static_cast<WeakConfiguration*>(data)->lock();
    if (!configuration) {
        fail(request, {.domain = g_quark_to_string(G_IO_ERROR), .code = G_IO_ERROR_CLOSED});
        return;
    }
    const char* address = webkit_uri_scheme_request_get_uri(request);
    const auto answer = configuration->answerRequest(address == nullptr ? std::string() : address);
    if (answer)
        finish(request, *answer);
    else
        fail(request, answer.error());
}

void registerScheme(WebKitWebContext* context, const std::shared_ptr<const HiddenPageConfiguration>& configuration)
{
    const auto drop = [](gpointer data) { delete static_cast<WeakConfiguration*>(data); };
    webkit_web_context_register_uri_scheme(context, configuration->scheme.c_str(), answerRequest,
                                           new WeakConfiguration(configuration), drop);
}

} // namespace

WebKitHiddenPageView::WebKitHiddenPageView(GObjectPtr<WebKitWebContext> context, HiddenPageConfiguration configuration)
    : configuration_(std::make_shared<const HiddenPageConfiguration>(std::move(configuration))),
      context_(std::move(context)), session_(adopt(webkit_network_session_new_ephemeral())),
      content_(adopt(webkit_user_content_manager_new())),
      view_(makeWebKitView(context_.get(), session_.get(), content_.get())), refusals_(view_.get())
{
    registerScheme(context_.get(), configuration_);
    downloads_ = SignalConnection::to<&WebKitHiddenPageView::downloadStarted>(session_.get(), "download-started", this);
    const auto signal = "script-message-received::" + configuration_->messageHandler;
    messages_ = SignalConnection::to<&WebKitHiddenPageView::messageReceived>(content_.get(), signal.c_str(), this);
    webkit_user_content_manager_register_script_message_handler(content_.get(), configuration_->messageHandler.c_str(),
                                                                nullptr);
}

WebKitHiddenPageView::~WebKitHiddenPageView() = default;

void WebKitHiddenPageView::load(const Url& url)
{
    webkit_web_view_load_uri(view_.get(), url.text().c_str());
}

void WebKitHiddenPageView::evaluate(std::string_view script)
{
    webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr,
                                        nullptr, nullptr, nullptr, nullptr);
}

void WebKitHiddenPageView::messageReceived(JSCValue* value)
{
    const auto json = adopt(jsc_value_to_json(value, 0));
    if (!json) {
        jsc_context_clear_exception(jsc_value_get_context(value)); // of a value that contains itself
        return;
    }
    const std::string_view text(json.get());
    if (text.size() <= longestMessage)
        configuration_->messageReceived(std::string(text));
}

/// A page must not put files on the disk unasked.
void WebKitHiddenPageView::downloadStarted(WebKitDownload* download)
{
    webkit_download_cancel(download);
}

} // namespace corvane
