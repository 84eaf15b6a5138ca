#pragma once

#include "ports/WebView.h"

#include <memory>

#include <webkit/webkit.h>

namespace corvane {

/// A panel request of a WebKit view. Asking to leave a page is no panel: the view answers it itself.
std::unique_ptr<ScriptPanel> makeScriptPanel(WebKitScriptDialog* dialog);

} // namespace corvane
