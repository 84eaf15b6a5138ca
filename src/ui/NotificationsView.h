#pragma once

#include "screens/NotificationsModel.h"
#include "ui/DocumentPane.h"
#include "ui/NotificationListView.h"
#include "ui/SheetFrame.h"

#include <vector>

#include <gtkmm/revealer.h>
#include <gtkmm/stack.h>

namespace corvane {

/// Draws the notifications dialog: the list, or the notification that is open.
class NotificationsView : public SheetFrame {
public:
    /// Everything must outlive this object.
    NotificationsView(NotificationsModel& model, DocumentViewFactory& documents, Gtk::Window& mainWindow,
                      WindowMonitor& windows);

private:
    void buildButtons();
    void buildCopiedLabel();
    void showSelection();

    NotificationsModel& model_;
    DocumentViewFactory& documents_;
    Gtk::Stack stack_;
    NotificationListView list_;
    Gtk::Box detail_{Gtk::Orientation::VERTICAL};
    std::unique_ptr<DocumentPane> document_; // from the first notification opened
    Gtk::Button* dismissAll_ = nullptr;      // the buttons belong to the footer
    Gtk::Button* back_ = nullptr;
    Gtk::Button* copy_ = nullptr;
    Gtk::Button* close_ = nullptr;
    Gtk::Revealer copied_;
    std::vector<Subscription> observations_;
};

} // namespace corvane
