#include "ui/ShortcutsView.h"

#include "screens/ShortcutModel.h"
#include "ui/TopmostWindow.h"

#include <string>

#include <fmt/format.h>
#include <glibmm/markup.h>
#include <gtk/gtk.h>

namespace corvane {
namespace {

std::string property(std::string_view name, std::string_view value)
{
    return fmt::format("<property name='{}'>{}</property>", name, Glib::Markup::escape_text(std::string(value)).raw());
}

std::string child(std::string_view type, const std::string& content)
{
    return fmt::format("<child><object class='{}'>{}</object></child>", type, content);
}

/// The window as an interface description: the toolkit builds it in no other way.
std::string description()
{
    std::string groups;
    for (const auto& group : ShortcutModel::groups()) {
        auto shortcuts = property("title", group.title);
        for (const auto& shortcut : group.shortcuts) {
            shortcuts += child("GtkShortcutsShortcut",
                               property("accelerator", shortcut.accelerator) + property("title", shortcut.title));
        }
        groups += child("GtkShortcutsGroup", shortcuts);
    }
    const auto section = child("GtkShortcutsSection", property("section-name", "all") + groups);
    return "<interface><object class='GtkShortcutsWindow' id='shortcuts'>" + property("modal", "1") + section +
           "</object></interface>";
}

} // namespace

void showShortcuts(Gtk::Window& mainWindow)
{
    for (auto* shown : Gtk::Window::list_toplevels()) {
        if (GTK_IS_SHORTCUTS_WINDOW(shown->gobj()) && shown->get_visible())
            return shown->present();
    }
    const auto text = description();
    GtkBuilder* builder = gtk_builder_new_from_string(text.c_str(), static_cast<gssize>(text.size()));
    auto* window = GTK_WINDOW(gtk_builder_get_object(builder, "shortcuts"));
    auto& covered = topmostWindow(mainWindow);
    gtk_window_set_transient_for(window, covered.gobj());
    gtk_window_set_application(window, gtk_window_get_application(covered.gobj()));
    g_object_unref(builder); // The toolkit keeps the window until it is closed.
    gtk_window_present(window);
}

} // namespace corvane
