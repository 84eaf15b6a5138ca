#include "platform/WebKitPageBridge.h"

#include "base/Json.h"

#include <memory>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace corvane {
namespace {

constexpr const char* privateWorld = "com.hollisward.Corvane.bridge";

using UserScriptPtr = std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>>;

/// Runs in the private world: HOSTS and NAME are filled in. The origin is the document's own and not that of its
/// address, which a document without an origin (in a sandbox) has all the same.
constexpr std::string_view listenerSource = R"((function() {{
    if ({hosts}.indexOf(window.location.hostname) === -1) return;
    var handler = window.webkit.messageHandlers[{name}];
    window.addEventListener('corvane-page-message', function(event) {{
        var body = event.detail;
        if (typeof body !== 'string' || body.length > 65536) return;
        var around = window.location.ancestorOrigins;
        handler.postMessage(JSON.stringify({{
            origin: window.origin, isTop: window === window.top,
            topOrigin: around.length === 0 ? window.origin : around[around.length - 1], body: body
        }}));
    }});
}})();)";

/// Runs in the page's world, before the page's own scripts.
constexpr std::string_view entrySource = R"((function() {{
    if ({hosts}.indexOf(window.location.hostname) === -1) return;
    var webkit = window.webkit || (window.webkit = {{}});
    var handlers = webkit.messageHandlers || (webkit.messageHandlers = {{}});
    handlers[{name}] = {{
        postMessage: function(body) {{
            var json;
            try {{ json = JSON.stringify(body); }} catch (error) {{ return; }}
            if (typeof json === 'string')
                window.dispatchEvent(new CustomEvent('corvane-page-message', {{ detail: json }}));
        }}
    }};
}})();)";

std::string filledIn(std::string_view source, const MainViewConfiguration& configuration)
{
    const auto hosts = compactJson(Json(configuration.bridgedHosts));
    const auto name = compactJson(Json(configuration.messageHandler));
    return fmt::format(fmt::runtime(source), fmt::arg("hosts", hosts), fmt::arg("name", name));
}

} // namespace

WebKitPageBridge::WebKitPageBridge(WebKitUserContentManager* content, const MainViewConfiguration& configuration,
                                   Receiver receiver)
    : receiver_(std::move(receiver))
{
    const auto signal = "script-message-received::" + configuration.messageHandler;
    received_ = SignalConnection::to<&WebKitPageBridge::messageReceived>(content, signal.c_str(), this);
    webkit_user_content_manager_register_script_message_handler(content, configuration.messageHandler.c_str(),
                                                                privateWorld);

    const UserScriptPtr listener(webkit_user_script_new_for_world(
        filledIn(listenerSource, configuration).c_str(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
        WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, privateWorld, nullptr, nullptr));
    webkit_user_content_manager_add_script(content, listener.get());
    const UserScriptPtr entry(webkit_user_script_new(filledIn(entrySource, configuration).c_str(),
                                                     WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                     WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr));
    webkit_user_content_manager_add_script(content, entry.get());
}

void WebKitPageBridge::messageReceived(JSCValue* value)
{
    if (!jsc_value_is_string(value))
        return;
    const auto bytes = adopt(jsc_value_to_string_as_bytes(value));
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    const auto message = parseJson(std::string_view(data, size));
    if (!message)
        return;
    const auto* origin = textOf(member(*message, "origin"));
    const auto* topOrigin = textOf(member(*message, "topOrigin"));
    const auto* body = textOf(member(*message, "body"));
    const auto* isTop = member(*message, "isTop");
    if (origin == nullptr || topOrigin == nullptr || body == nullptr || isTop == nullptr || !isTop->is_boolean())
        return;
    receiver_({.origin = *origin, .isTopFrame = isTop->get<bool>(), .topOrigin = *topOrigin, .body = *body});
}

} // namespace corvane
