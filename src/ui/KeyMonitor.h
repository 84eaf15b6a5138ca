#pragma once

#include "screens/ShortcutModel.h"

#include <functional>

#include <gtkmm/window.h>

namespace corvane {

/// Watches the keys of the program's windows before any control sees them: some of them would otherwise begin something
/// of the toolkit's own, such as its entry of Unicode characters. Every window and every popover needs it: each takes
/// the keys for itself while it has the focus.
class KeyMonitor {
public:
    using Place = ShortcutModel::Place;

    /// Says whether the key was one of ours; nobody else sees it then.
    using Handler = std::function<bool(const KeyPress&, Place)>;

    explicit KeyMonitor(Handler handler);

    /// Watches a dialog or a menu until that goes. This object must outlive it.
    void watch(Gtk::Widget& root);

    /// The same for the main window.
    void watchMainWindow(Gtk::Window& window);

private:
    void watch(Gtk::Widget& root, std::function<Place()> place);

    Handler handler_;
};

} // namespace corvane
