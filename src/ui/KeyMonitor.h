#pragma once

#include <functional>

#include <gtkmm/widget.h>

namespace corvane {

/// Watches the keys of the program's windows before any control sees them: Control+Shift+U, which would otherwise begin
/// the toolkit's own entry of Unicode characters. Every window and every popover needs it: each takes the keys for
/// itself while it has the focus.
class KeyMonitor {
public:
    explicit KeyMonitor(std::function<void()> toggleURLMode);

    /// Watches a window or popover until that goes. This object must outlive it.
    void watch(Gtk::Widget& root);

private:
    std::function<void()> toggleURLMode_;
};

} // namespace corvane
