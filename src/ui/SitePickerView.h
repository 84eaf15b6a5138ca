#pragma once

#include "screens/SiteSelectorModel.h"
#include "ui/KeyMonitor.h"

#include <cstddef>
#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/listitem.h>
#include <gtkmm/listview.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/popover.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/searchentry.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/singleselection.h>
#include <gtkmm/stringlist.h>

namespace corvane {

/// The button that shows the chosen service and the list that opens below it, with a search field above a long list.
/// The rows are made when the list opens.
class SitePickerView : public Gtk::MenuButton {
public:
    /// The model must outlive this object.
    SitePickerView(SiteSelectorModel& model, KeyMonitor& keys);

private:
    void buildPopover(KeyMonitor& keys);
    void buildList();
    void showChoice();
    void openList();
    void fillList();
    void activateRow(guint position);
    void bindRow(const Glib::RefPtr<Gtk::ListItem>& item);
    guint rowOfChoice() const;

    SiteSelectorModel& model_;
    Gtk::Box face_{Gtk::Orientation::HORIZONTAL, 6};
    Gtk::Label choice_;
    Gtk::Popover popover_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 6};
    Gtk::SearchEntry search_;
    Gtk::ScrolledWindow scroller_;
    Gtk::ListView list_;
    Gtk::Label nothingFound_{"No service matches."};
    Glib::RefPtr<Gtk::StringList> rows_;
    Glib::RefPtr<Gtk::SingleSelection> selection_;
    std::vector<SiteSelectorModel::Row> shown_;
    std::vector<Subscription> observations_;
};

} // namespace corvane
