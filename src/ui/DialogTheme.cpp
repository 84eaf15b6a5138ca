#include "ui/DialogTheme.h"

#include "screens/DialogStyleSheet.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"

#include <gdkmm/display.h>
#include <gtkmm/stylecontext.h>

namespace corvane {

DialogTheme::DialogTheme(const ThemeManager& themes, const SettingsManager& settings)
    : themes_(themes), settings_(settings), provider_(Gtk::CssProvider::create())
{
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider_,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
    settingsChanges_ = settings_.settings().observe([this](const AppSettings&) { refresh(); });
}

DialogTheme::~DialogTheme()
{
    if (const auto display = Gdk::Display::get_default())
        Gtk::StyleContext::remove_provider_for_display(display, provider_);
}

void DialogTheme::refresh()
{
    provider_->load_from_data(dialogStyleSheet(themes_.dialogColors(settings_.settings()->DialogTheme)));
}

} // namespace corvane
