#include "ui/Accessible.h"

#include <gtk/gtk.h>

namespace corvane {

namespace {

void setProperty(Gtk::Widget& widget, GtkAccessibleProperty property, const std::string& text)
{
    auto* whole = widget.gobj();
    gtk_accessible_update_property(GTK_ACCESSIBLE(whole), property, text.c_str(), -1);
    auto* inner = GTK_IS_MENU_BUTTON(whole) || GTK_IS_DROP_DOWN(whole) ? gtk_widget_get_first_child(whole) : nullptr;
    if (inner != nullptr)
        gtk_accessible_update_property(GTK_ACCESSIBLE(inner), property, text.c_str(), -1);
}

} // namespace

void setAccessibleName(Gtk::Widget& widget, const std::string& name)
{
    setProperty(widget, GTK_ACCESSIBLE_PROPERTY_LABEL, name);
}

void setAccessibleDescription(Gtk::Widget& widget, const std::string& description)
{
    setProperty(widget, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, description);
}

void setDialogRole(Gtk::Window& window)
{
    g_object_set(window.gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_DIALOG, nullptr);
}

} // namespace corvane
