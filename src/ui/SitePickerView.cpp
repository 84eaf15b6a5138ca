#include "ui/SitePickerView.h"

#include "ui/Accessible.h"
#include "ui/PageFocus.h"

#include <algorithm>
#include <string>

#include <giomm/themedicon.h>
#include <gtkmm/image.h>
#include <gtkmm/stringobject.h>

namespace corvane {

SitePickerView::SitePickerView(SiteSelectorModel& model, KeyMonitor& keys) : model_(model)
{
    add_css_class("service-picker");
    set_size_request(SiteSelectorModel::smallestWidth, -1);

    choice_.set_ellipsize(Pango::EllipsizeMode::END);
    choice_.set_xalign(0);
    choice_.set_hexpand(true);
    face_.append(choice_);
    face_.append(*Gtk::make_managed<Gtk::Image>(Gio::ThemedIcon::create("pan-down-symbolic")));
    set_child(face_);
    // The toolkit centres what it wraps; the choice reads from the left.
    face_.set_hexpand(true);
    face_.get_parent()->set_halign(Gtk::Align::FILL);
    setAccessibleName(*this, "Service");

    buildPopover(keys);
    buildList();
    observations_.push_back(model_.selectedSiteID.observe([this](const auto&) { showChoice(); }));
    observations_.push_back(model_.includeServicePlaceholder.observe([this](bool) { showChoice(); }));
    observations_.push_back(model_.sites().observe([this](const auto&) {
        fillList(); // The rows shown so far point into the old catalogue.
        showChoice();
    }));
    showChoice();
}

void SitePickerView::buildPopover(KeyMonitor& keys)
{
    search_.set_property("placeholder-text", Glib::ustring("Search services"));
    setAccessibleName(search_, "Search services");
    search_.set_key_capture_widget(popover_);
    search_.signal_search_changed().connect([this] { fillList(); });
    search_.signal_activate().connect([this] {
        if (model_.chooseFirst(search_.get_text().raw())) // The list may still show an earlier search.
            closeAndFocusPage(popover_);
    });
    search_.signal_stop_search().connect([this] { popover_.popdown(); });

    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_propagate_natural_height(true);
    scroller_.set_max_content_height(420);
    scroller_.set_child(list_);
    nothingFound_.add_css_class("dim-label");
    nothingFound_.set_margin(12);

    content_.append(search_);
    content_.append(scroller_);
    content_.append(nothingFound_);
    content_.set_size_request(SiteSelectorModel::smallestWidth, -1);
    popover_.set_child(content_);
    popover_.signal_map().connect([this] { openList(); });
    keys.watch(popover_);
    set_popover(popover_);
}

void SitePickerView::buildList()
{
    rows_ = Gtk::StringList::create({});
    selection_ = Gtk::SingleSelection::create(rows_);
    selection_->set_autoselect(false);
    selection_->set_can_unselect(true);

    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
        auto* label = Gtk::make_managed<Gtk::Label>();
        label->set_xalign(0);
        label->set_ellipsize(Pango::EllipsizeMode::END);
        label->add_css_class("service-row");
        item->set_child(*label);
    });
    factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) { bindRow(item); });

    list_.set_model(selection_);
    list_.set_factory(factory);
    list_.set_single_click_activate(true);
    list_.signal_activate().connect([this](guint position) { activateRow(position); });
    setAccessibleName(list_, "Services");
}

void SitePickerView::bindRow(const Glib::RefPtr<Gtk::ListItem>& item)
{
    auto* label = dynamic_cast<Gtk::Label*>(item->get_child());
    const auto position = item->get_position();
    if (label == nullptr || position >= shown_.size())
        return;
    const auto& row = shown_[position];
    label->set_text(std::string(row.title));
    label->set_tooltip_text(std::string(row.description));
}

void SitePickerView::showChoice()
{
    const auto shown = model_.shownChoice();
    choice_.set_text(std::string(shown));
    setAccessibleDescription(*this, std::string(shown));
}

void SitePickerView::openList()
{
    search_.set_visible(model_.hasSearch());
    search_.set_text("");
    fillList();
    const auto chosen = rowOfChoice();
    selection_->set_selected(chosen);
    if (chosen != GTK_INVALID_LIST_POSITION)
        list_.activate_action("list.scroll-to-item", Glib::Variant<guint>::create(chosen));
    if (model_.hasSearch())
        search_.grab_focus();
    else
        list_.grab_focus();
}

void SitePickerView::fillList()
{
    shown_ = model_.rows(search_.get_text().raw());
    std::vector<Glib::ustring> titles(shown_.size());
    std::ranges::transform(shown_, titles.begin(), [](const auto& row) { return std::string(row.title); });
    rows_->splice(0, rows_->get_n_items(), titles);
    scroller_.set_visible(!shown_.empty());
    nothingFound_.set_visible(shown_.empty());
}

guint SitePickerView::rowOfChoice() const
{
    const auto chosen =
        std::ranges::find_if(shown_, [this](const auto& row) { return row.service == *model_.selectedSiteID; });
    return chosen == shown_.end() ? GTK_INVALID_LIST_POSITION : static_cast<guint>(chosen - shown_.begin());
}

void SitePickerView::activateRow(guint position)
{
    if (position >= shown_.size())
        return;
    const auto service = shown_[position].service;
    closeAndFocusPage(popover_);
    if (service)
        model_.choose(*service);
}

} // namespace corvane
