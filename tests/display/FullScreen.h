#pragma once

#include "platform/GLibHandle.h"
#include "support/MainContext.h"

#include <gio/gio.h>
#include <glibmm/wrap.h>
#include <gtkmm/window.h>

namespace corvane::testing {

/// A view on the whole screen, so that a click in the middle meets what covers its page.
class FullScreen {
public:
    [[nodiscard]] bool show(GtkWidget* view)
    {
        window_.set_child(*Glib::wrap(view));
        window_.fullscreen();
        window_.present();
        return iterateUntil([&] { return window_.is_active() && gtk_widget_get_width(view) >= 1280; });
    }

    void empty() { window_.unset_child(); }

    /// Clicks into the middle with a real pointer; false when there is none.
    [[nodiscard]] static bool click()
    {
        return adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, nullptr, "xdotool", "mousemove", "640", "512", "click",
                                      "1", nullptr)) != nullptr;
    }

    /// Clicks into the middle and then near the lower edge.
    [[nodiscard]] static bool clickTwice()
    {
        return adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, nullptr, "xdotool", "mousemove", "640", "512", "click",
                                      "1", "mousemove", "640", "960", "click", "1", nullptr)) != nullptr;
    }

private:
    Gtk::Window window_;
};

} // namespace corvane::testing
