#pragma once

#include "platform/SignalConnection.h"

#include <vector>

#include <webkit/webkit.h>

namespace corvane {

/// Says no, as long as it lives, to all that the page in a view may ask the user for: permissions, a log-in, a file, a
/// colour, panels, printing. A load that fails leaves the page that was there, without the engine's error page.
class WebKitRefusals {
public:
    explicit WebKitRefusals(WebKitWebView* view);

private:
    std::vector<SignalConnection> answers_;
};

} // namespace corvane
