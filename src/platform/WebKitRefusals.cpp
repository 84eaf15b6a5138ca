#include "platform/WebKitRefusals.h"

#include <array>
#include <utility>

namespace corvane {
namespace {

/// A signal's handler that gives the request to `refuse` and lets no other handler see it.
template <typename Request, auto refuse>
GCallback refusing()
{
    gboolean (*answer)(WebKitWebView*, Request*, gpointer) = [](WebKitWebView*, Request* request,
                                                                gpointer) -> gboolean {
        refuse(request);
        return TRUE;
    };
    return reinterpret_cast<GCallback>(answer);
}

/// Nothing has to be called: a panel or a print that is taken and not answered counts as cancelled.
template <typename Request>
void leave(Request* /*request*/)
{
}

gboolean keepThePage(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/, char* /*address*/, GError* /*error*/,
                     gpointer /*data*/)
{
    return TRUE;
}

} // namespace

WebKitRefusals::WebKitRefusals(WebKitWebView* view)
{
    const std::array<std::pair<const char*, GCallback>, 7> handlers{{
        {"permission-request", refusing<WebKitPermissionRequest, webkit_permission_request_deny>()},
        {"authenticate", refusing<WebKitAuthenticationRequest, webkit_authentication_request_cancel>()},
        {"run-file-chooser", refusing<WebKitFileChooserRequest, webkit_file_chooser_request_cancel>()},
        {"run-color-chooser", refusing<WebKitColorChooserRequest, webkit_color_chooser_request_cancel>()},
        {"script-dialog", refusing<WebKitScriptDialog, leave<WebKitScriptDialog>>()},
        {"print", refusing<WebKitPrintOperation, leave<WebKitPrintOperation>>()},
        {"load-failed", G_CALLBACK(keepThePage)},
    }};
    for (const auto& [signal, handler] : handlers)
        answers_.emplace_back(view, signal, handler, nullptr);
}

} // namespace corvane
