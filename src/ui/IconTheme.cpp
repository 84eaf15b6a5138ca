#include "ui/IconTheme.h"

#include "ports/AppInfo.h"

#include <gdkmm/display.h>
#include <gtkmm/icontheme.h>
#include <gtkmm/window.h>

namespace corvane {

void addIcons(const std::vector<std::filesystem::path>& resourceFolders)
{
    const auto theme = Gtk::IconTheme::get_for_display(Gdk::Display::get_default());
    for (const auto& folder : resourceFolders)
        theme->add_search_path(folder / "icons");
    Gtk::Window::set_default_icon_name(AppInfo::applicationId);
}

} // namespace corvane
