#pragma once

#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"
#include "ports/WebView.h"

#include <functional>

#include <webkit/webkit.h>

namespace corvane {

/// The channel from pages to the program. The engine's handler is registered in a private script world that no page can
/// reach; a script in that world listens for one DOM event and adds what only the engine knows: the origin of the
/// sending frame, whether it is the top one, and the origin of the top one. Pages of the bridged hosts find the usual
/// `window.webkit.messageHandlers.<name>.postMessage`, which raises that event with its argument as JSON.
class WebKitPageBridge {
public:
    using Receiver = std::function<void(const PageMessage&)>;

    /// Adds scripts and handler to `content`, before any other script.
    WebKitPageBridge(WebKitUserContentManager* content, const MainViewConfiguration& configuration, Receiver receiver);

private:
    void messageReceived(JSCValue* value);

    Receiver receiver_;
    SignalConnection received_;
};

} // namespace corvane
