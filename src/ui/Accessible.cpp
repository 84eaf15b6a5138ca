#include "ui/Accessible.h"

#include <gtk/gtk.h>

namespace corvane {

void setAccessibleName(Gtk::Widget& widget, const std::string& name)
{
    auto* whole = widget.gobj();
    gtk_accessible_update_property(GTK_ACCESSIBLE(whole), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
    if (!GTK_IS_MENU_BUTTON(whole))
        return;
    if (auto* inner = gtk_widget_get_first_child(whole))
        gtk_accessible_update_property(GTK_ACCESSIBLE(inner), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
}

} // namespace corvane
