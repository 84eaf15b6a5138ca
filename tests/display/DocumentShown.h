#pragma once

#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"
#include "ports/DocumentView.h"
#include "support/MainContext.h"

#include <optional>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace corvane::testing {

/// Shows a text that differs from the one before and waits until its page is complete; what is left of an earlier load
/// does not count.
[[nodiscard]] inline bool showAndWait(DocumentView& view, GtkWidget* widget, const std::string& html)
{
    std::vector<WebKitLoadEvent> events;
    const auto note = +[](WebKitWebView*, WebKitLoadEvent event, gpointer noted) {
        auto& seen = *static_cast<std::vector<WebKitLoadEvent>*>(noted);
        if (event == WEBKIT_LOAD_COMMITTED || (event == WEBKIT_LOAD_FINISHED && !seen.empty()))
            seen.push_back(event);
    };
    const SignalConnection loads(widget, "load-changed", G_CALLBACK(note), &events);
    view.show(html);
    return iterateUntil([&] { return events.size() >= 2; });
}

/// The bytes of the page in the view, asked of its process: what that had told before has arrived by then.
inline std::optional<std::string> shownBytes(GtkWidget* widget)
{
    auto* resource = webkit_web_view_get_main_resource(WEBKIT_WEB_VIEW(widget));
    if (resource == nullptr)
        return std::nullopt;
    struct Answer {
        bool hasCome = false;
        std::optional<std::string> bytes;
    } answer;
    webkit_web_resource_get_data(
        resource, nullptr,
        [](GObject* asked, GAsyncResult* result, gpointer data) {
            gsize size = 0;
            auto* bytes = webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(asked), result, &size, nullptr);
            auto& answered = *static_cast<Answer*>(data);
            answered.hasCome = true;
            if (bytes != nullptr)
                answered.bytes.emplace(reinterpret_cast<const char*>(bytes), size);
            g_free(bytes);
        },
        &answer);
    // Without an answer the test cannot go on: it would be written into this frame.
    while (!answer.hasCome)
        g_main_context_iteration(nullptr, TRUE);
    return answer.bytes;
}

} // namespace corvane::testing
