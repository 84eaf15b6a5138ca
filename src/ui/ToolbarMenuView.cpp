#include "ui/ToolbarMenuView.h"

#include "ui/Accessible.h"
#include "ui/PageFocus.h"

#include <string>

#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/separator.h>

namespace corvane {

ToolbarMenuView::ToolbarMenuView(ToolbarModel& model, KeyMonitor& keys) : model_(model)
{
    add_css_class("nav-button");
    set_icon_name("open-menu-symbolic");
    set_tooltip_text("Menu");
    set_primary(true); // F10
    set_valign(Gtk::Align::CENTER);
    setAccessibleName(*this, "Menu");

    for (const auto& entry : ToolbarModel::menu)
        addEntry(entry);
    entries_.set_size_request(200, -1);
    popover_.add_css_class("menu");
    popover_.add_css_class("toolbar-menu");
    popover_.set_child(entries_);
    popover_.signal_map().connect([this] { model_.menuOpened(); });
    keys.watch(popover_);
    set_popover(popover_);
}

void ToolbarMenuView::addEntry(const ToolbarModel::MenuEntry& entry)
{
    auto* icon = Gtk::make_managed<Gtk::Image>();
    auto* title = Gtk::make_managed<Gtk::Label>();
    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    row->append(*icon);
    row->append(*title);

    auto* button = Gtk::make_managed<Gtk::Button>();
    button->set_child(*row);
    button->set_has_frame(false);
    setAccessibleName(*button, std::string(entry.title));
    button->signal_clicked().connect([this, item = entry.item] {
        closeAndFocusPage(popover_);
        model_.choose(item);
    });
    observations_.push_back(model_.state(entry.item).bind([icon, title, button](const ToolbarModel::EntryState& state) {
        icon->set_from_icon_name(std::string(state.icon));
        title->set_text(std::string(state.title) + (state.hasBadge ? "●" : ""));
        button->set_sensitive(state.isEnabled);
    }));
    entries_.append(*button);
    if (entry.endsGroup)
        entries_.append(*Gtk::make_managed<Gtk::Separator>());
}

} // namespace corvane
