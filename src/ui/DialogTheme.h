#pragma once

#include "base/Subscription.h"

#include <glibmm/refptr.h>
#include <gtkmm/cssprovider.h>

namespace corvane {

class SettingsManager;
class ThemeManager;

/// The style sheet of the dialogs on the screen, made from the theme that the settings name. Made when the first dialog
/// opens.
class DialogTheme {
public:
    /// Both must outlive this object.
    DialogTheme(const ThemeManager& themes, const SettingsManager& settings);
    ~DialogTheme();
    DialogTheme(const DialogTheme&) = delete;
    DialogTheme& operator=(const DialogTheme&) = delete;

    /// Reads the theme anew; called whenever a dialog opens.
    void refresh();

private:
    const ThemeManager& themes_;
    const SettingsManager& settings_;
    Glib::RefPtr<Gtk::CssProvider> provider_;
    Subscription settingsChanges_;
};

} // namespace corvane
