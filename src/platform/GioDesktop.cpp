#include "platform/GioDesktop.h"

#include "base/Text.h"
#include "platform/GLibHandle.h"
#include "platform/MailtoUrl.h"

#include <utility>

#include <gdk/gdk.h>

namespace corvane {

GioDesktop::GioDesktop(std::function<void()> quit, std::vector<std::string> ownVariables)
    : quit_(std::move(quit)), ownVariables_(std::move(ownVariables))
{
}

void GioDesktop::open(const Url& url)
{
    auto* display = gdk_display_get_default();
    const auto context = adopt(display == nullptr ? g_app_launch_context_new()
                                                  : G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)));
    for (const auto& variable : ownVariables_)
        g_app_launch_context_unsetenv(context.get(), variable.c_str());
    const auto safe = withoutAttachments(url);
    g_app_info_launch_default_for_uri_async(
        safe.text().c_str(), context.get(), nullptr,
        [](GObject*, GAsyncResult* result, gpointer) { g_app_info_launch_default_for_uri_finish(result, nullptr); },
        nullptr);
}

void GioDesktop::copyText(std::string_view text)
{
    auto* display = gdk_display_get_default();
    if (display == nullptr)
        return;
    auto plain = repairedUtf8(text);
    std::erase(plain, '\0'); // would end the text for the C side
    gdk_clipboard_set_text(gdk_display_get_clipboard(display), plain.c_str());
}

void GioDesktop::quit()
{
    quit_();
}

} // namespace corvane
