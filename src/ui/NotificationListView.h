#pragma once

#include "base/Subscription.h"
#include "screens/NotificationsModel.h"

#include <gtkmm/listitem.h>
#include <gtkmm/listview.h>
#include <gtkmm/noselection.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/stringlist.h>

namespace corvane {

/// Draws the list of the notifications that wait. Only the rows that are seen exist.
class NotificationListView : public Gtk::ScrolledWindow {
public:
    /// The model must outlive this object.
    explicit NotificationListView(NotificationsModel& model);

    /// Shows the list as it is now.
    void refresh();

    /// Gives the keyboard to a line, as soon as there is one.
    void focusLine();

private:
    void giveFocus();
    void bindRow(const Glib::RefPtr<Gtk::ListItem>& item);
    const PendingNotification* notification(guint position) const;

    NotificationsModel& model_;
    Glib::RefPtr<Gtk::StringList> rows_;
    Gtk::ListView list_;
    bool wantsFocus_ = false; // until there is a line to have it
    Subscription focusing_;
};

} // namespace corvane
