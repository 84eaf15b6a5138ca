#include "platform/WebKitDocumentView.h"

#include "platform/WebKitFeature.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {
namespace {

constexpr const char* contentPolicy =
    "default-src 'none'; img-src data: http: https:; style-src 'unsafe-inline'; font-src data:; base-uri 'none'; "
    "form-action 'none'";

/// The address that the engine gives to a text without one.
constexpr std::string_view ownAddress = "about:blank";

using UserStyleSheetPtr = std::unique_ptr<WebKitUserStyleSheet, FreeWith<webkit_user_style_sheet_unref>>;

GObjectPtr<WebKitSettings> documentSettings(Renderer renderer)
{
    auto settings = adopt(webkit_settings_new());
    webkit_settings_set_enable_javascript(settings.get(), FALSE);
    webkit_settings_set_enable_developer_extras(settings.get(), FALSE);
    webkit_settings_set_enable_fullscreen(settings.get(), FALSE);
    // The engine refuses such links by itself, for the sake of pages whose address is seen.
    setFeature(settings.get(), "AllowTopNavigationToDataURLs", FeatureState::on);
    if (renderer == Renderer::software)
        webkit_settings_set_hardware_acceleration_policy(settings.get(), WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    return settings;
}

GObjectPtr<WebKitWebView> makeWebKitView(WebKitWebContext* context, WebKitNetworkSession* session, Renderer renderer)
{
    const auto settings = documentSettings(renderer);
    return sink(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session", session,
                                             "default-content-security-policy", contentPolicy, "settings",
                                             settings.get(), nullptr)));
}

std::string addressOf(WebKitNavigationAction* action)
{
    auto* request = webkit_navigation_action_get_request(action);
    const char* address = request == nullptr ? nullptr : webkit_uri_request_get_uri(request);
    return address == nullptr ? std::string() : address;
}

} // namespace

template <auto method>
void WebKitDocumentView::connect(const char* signal)
{
    signals_.push_back(SignalConnection::to<method>(view_.get(), signal, this));
}

WebKitDocumentView::WebKitDocumentView(WebKitWebContext* context, WebKitNetworkSession* session, Renderer renderer)
    : view_(makeWebKitView(context, session, renderer)), refusals_(view_.get())
{
    constexpr GdkRGBA transparent{};
    webkit_web_view_set_background_color(view_.get(), &transparent);
    connect<&WebKitDocumentView::policyAsked>("decide-policy");
    connect<&WebKitDocumentView::createRequested>("create");
    connect<&WebKitDocumentView::contextMenuRequested>("context-menu");
    connect<&WebKitDocumentView::processTerminated>("web-process-terminated");
}

WebKitDocumentView::~WebKitDocumentView() = default;

void WebKitDocumentView::setLinkRule(LinkRule rule)
{
    rule_ = std::move(rule);
}

void WebKitDocumentView::setReaderStyle(std::string_view css)
{
    auto* content = webkit_web_view_get_user_content_manager(view_.get());
    webkit_user_content_manager_remove_all_style_sheets(content);
    const UserStyleSheetPtr sheet(webkit_user_style_sheet_new(std::string(css).c_str(),
                                                              WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                              WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr));
    webkit_user_content_manager_add_style_sheet(content, sheet.get());
}

void WebKitDocumentView::show(std::string_view html)
{
    if (html_ == html)
        return;
    html_ = html;
    isShownAgain_ = false;
    load(html);
}

void WebKitDocumentView::load(std::string_view html)
{
    const auto bytes = adopt(g_bytes_new(html.data(), html.size()));
    webkit_web_view_load_bytes(view_.get(), bytes.get(), "text/html", "utf-8", nullptr);
}

/// Asks a copy of the rule, which may destroy this view.
bool WebKitDocumentView::mayFollow(const DocumentLink& link)
{
    const auto rule = rule_;
    return rule && rule(link);
}

gboolean WebKitDocumentView::policyAsked(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type)
{
    // What cannot be shown becomes a download, which its owner cancels.
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        return FALSE;
    return navigationAsked(decision, type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION);
}

/// Decides about links by the rule, and lets nothing else happen but the load of the own text: no refresh after a time,
/// no frame, no form.
gboolean WebKitDocumentView::navigationAsked(WebKitPolicyDecision* decision, bool isInNewWindow)
{
    auto* action = webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const auto address = addressOf(action);
    const auto cause = webkit_navigation_action_get_navigation_type(action);

    bool isAllowed = false;
    if (isInNewWindow)
        mayFollow({.address = address, .asksForNewWindow = true});
    else if (address == ownAddress) // followed or reloaded it would be empty: there is nowhere to fetch the text from
        isAllowed = cause == WEBKIT_NAVIGATION_TYPE_OTHER;
    else if (cause == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED)
        isAllowed = mayFollow({.address = address, .asksForNewWindow = false});

    if (isAllowed)
        webkit_policy_decision_use(decision);
    else
        webkit_policy_decision_ignore(decision);
    return TRUE;
}

GtkWidget* WebKitDocumentView::createRequested(WebKitNavigationAction* action)
{
    mayFollow({.address = addressOf(action), .asksForNewWindow = true});
    return nullptr;
}

/// Leaves what copies and selects. Everything else loads or saves something.
gboolean WebKitDocumentView::contextMenuRequested(WebKitContextMenu* menu, WebKitHitTestResult* /*hit*/)
{
    static constexpr std::array kept{WEBKIT_CONTEXT_MENU_ACTION_COPY, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL,
                                     WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD,
                                     WEBKIT_CONTEXT_MENU_ACTION_COPY_IMAGE_TO_CLIPBOARD,
                                     WEBKIT_CONTEXT_MENU_ACTION_COPY_IMAGE_URL_TO_CLIPBOARD};
    for (guint i = webkit_context_menu_get_n_items(menu); i > 0; --i) {
        auto* item = webkit_context_menu_get_item_at_position(menu, i - 1);
        if (std::ranges::find(kept, webkit_context_menu_item_get_stock_action(item)) == kept.end())
            webkit_context_menu_remove(menu, item);
    }
    return webkit_context_menu_get_n_items(menu) == 0 ? TRUE : FALSE;
}

/// The view is blank now: the same text is worth loading again.
void WebKitDocumentView::processTerminated(WebKitWebProcessTerminationReason /*reason*/)
{
    if (html_ && !std::exchange(isShownAgain_, true))
        load(*html_);
}

} // namespace corvane
