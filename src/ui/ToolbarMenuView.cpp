#include "ui/ToolbarMenuView.h"

#include "base/Text.h"
#include "ui/Accessible.h"
#include "ui/PageFocus.h"

#include <string>

#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/separator.h>

namespace corvane {
namespace {

constexpr int iconSize = 18;
constexpr int dotSize = 8;

} // namespace

ToolbarMenuView::ToolbarMenuView(ToolbarModel& model, KeyMonitor& keys) : model_(model)
{
    add_css_class("nav-button");
    set_tooltip_text("Menu");
    set_primary(true); // F10
    set_valign(Gtk::Align::CENTER);
    setAccessibleName(*this, "Menu");
    buildFace();

    for (const auto& entry : ToolbarModel::menu)
        addEntry(entry);
    entries_.set_size_request(240, -1);
    popover_.add_css_class("menu");
    popover_.add_css_class("toolbar-menu");
    popover_.set_child(entries_);
    popover_.signal_map().connect([this] { model_.menuOpened(); });
    keys.watch(popover_);
    set_popover(popover_);
}

void ToolbarMenuView::buildFace()
{
    icon_.set_from_icon_name("corvane-menu-symbolic");
    icon_.set_size_request(iconSize, iconSize);
    dot_.add_css_class("badge-dot");
    dot_.set_size_request(dotSize, dotSize);
    // Its middle lies 4 points left of and below the icon's corner.
    dot_.set_halign(Gtk::Align::END);
    dot_.set_valign(Gtk::Align::START);
    face_.set_child(icon_);
    face_.add_overlay(dot_);
    set_child(face_);
    observations_.push_back(model_.hasBadge().bind([this](bool hasBadge) {
        dot_.set_visible(hasBadge);
        setAccessibleDescription(*this, hasBadge ? "There is something new" : "");
    }));
}

void ToolbarMenuView::addEntry(const ToolbarModel::MenuEntry& entry)
{
    auto* icon = Gtk::make_managed<Gtk::Image>();
    auto* title = Gtk::make_managed<Gtk::Label>();
    auto* badge = Gtk::make_managed<Gtk::Label>("●");
    badge->add_css_class("entry-badge");
    badge->add_css_class("caption");
    auto* text = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL);
    text->append(*title);
    text->append(*badge);
    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    row->append(*icon);
    row->append(*text);

    auto* button = Gtk::make_managed<Gtk::Button>();
    button->set_child(*row);
    button->set_has_frame(false);
    button->signal_clicked().connect([this, item = entry.item] {
        closeAndFocusPage(popover_);
        model_.choose(item);
    });
    observations_.push_back(model_.state(entry.item).bind([=](const ToolbarModel::EntryState& state) {
        icon->set_from_icon_name(std::string(state.icon));
        title->set_text(std::string(state.title));
        badge->set_visible(state.hasBadge);
        button->set_sensitive(state.isEnabled);
        setAccessibleName(*button, std::string(trimmed(state.title)));
        setAccessibleDescription(*button, state.hasBadge ? "New" : "");
    }));
    entries_.append(*button);
    if (entry.endsGroup)
        entries_.append(*Gtk::make_managed<Gtk::Separator>());
}

} // namespace corvane
