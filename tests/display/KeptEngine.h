#pragma once

#include "platform/GLibHandle.h"

#include <vector>

#include <webkit/webkit.h>

namespace corvane::testing {

/// Keeps the engine behind a view until the test program ends, as a program keeps it: messages of processes that are
/// just ending still arrive for an engine that is gone, and the engine does not survive them.
inline void keepEngineOf(GtkWidget* view)
{
    static std::vector<GObjectPtr<WebKitWebContext>> contexts;
    static std::vector<GObjectPtr<WebKitNetworkSession>> sessions;
    contexts.push_back(retain(webkit_web_view_get_context(WEBKIT_WEB_VIEW(view))));
    sessions.push_back(retain(webkit_web_view_get_network_session(WEBKIT_WEB_VIEW(view))));
}

} // namespace corvane::testing
