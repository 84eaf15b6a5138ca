#include "ui/NotificationListView.h"

#include "async/MainLoop.h"
#include "base/Text.h"
#include "notifications/NotificationText.h"
#include "ui/Accessible.h"

#include <string>
#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/signallistitemfactory.h>

namespace corvane {
namespace {

constexpr const char* openHint = "Open this notification. After you press Close it is removed forever.";
constexpr const char* copyHint = "Copy title and preview to the clipboard";
constexpr int copyButtonSize = 28;

Gtk::Label* line(const std::string& text, const char* style)
{
    auto* label = Gtk::make_managed<Gtk::Label>(text);
    label->set_xalign(0);
    label->set_single_line_mode(true);
    label->set_ellipsize(Pango::EllipsizeMode::END);
    label->add_css_class(style);
    return label;
}

} // namespace

NotificationListView::NotificationListView(NotificationsModel& model)
    : model_(model), rows_(Gtk::StringList::create(std::vector<Glib::ustring>{}))
{
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) { bindRow(item); });
    list_.set_factory(factory);
    list_.set_model(Gtk::NoSelection::create(rows_));
    list_.add_css_class("notification-list");
    setAccessibleName(list_, "Notifications");
    list_.signal_activate().connect([this](guint position) {
        if (const auto* activated = notification(position))
            model_.select(*activated);
    });
    list_.signal_map().connect([this] { giveFocus(); });
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    set_vexpand(true);
    set_child(list_);
    refresh();
}

void NotificationListView::refresh()
{
    rows_->splice(0, rows_->get_n_items(), std::vector<Glib::ustring>(model_.pending()->size()));
}

void NotificationListView::focusLine()
{
    wantsFocus_ = true;
    giveFocus();
}

/// A line takes the keyboard only once it has been laid out in a window that is seen: that window begins with the focus
/// elsewhere.
void NotificationListView::giveFocus()
{
    if (!wantsFocus_)
        return;
    focusing_ = callLater([this] {
        auto* line = list_.get_mapped() ? list_.get_first_child() : nullptr;
        wantsFocus_ = line == nullptr || !line->child_focus(Gtk::DirectionType::TAB_FORWARD);
    });
}

void NotificationListView::bindRow(const Glib::RefPtr<Gtk::ListItem>& item)
{
    const auto* shown = notification(item->get_position());
    if (shown == nullptr)
        return;
    auto* texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    const auto title = safeTitle(shownTitle(*shown));
    const auto text = safeTitle(preview(shown->body, previewLimit));
    texts->append(*line(title, "heading"));
    texts->append(*line(text, "muted"));
    auto* open = Gtk::make_managed<Gtk::Button>();
    open->set_child(*texts);
    open->set_hexpand(true);
    open->set_tooltip_text(openHint);
    open->add_css_class("flat-row");
    setAccessibleName(*open, title);
    setAccessibleDescription(*open, text);
    open->signal_clicked().connect([this, notification = *shown] { model_.select(notification); });

    auto* copy = Gtk::make_managed<Gtk::Button>();
    copy->set_icon_name("corvane-copy-symbolic");
    copy->set_size_request(copyButtonSize, copyButtonSize);
    copy->set_valign(Gtk::Align::CENTER);
    copy->set_tooltip_text(copyHint);
    copy->add_css_class("icon-button");
    setAccessibleName(*copy, "Copy notification");
    copy->signal_clicked().connect([this, notification = *shown] { model_.copyPreview(notification); });

    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    row->append(*open);
    row->append(*copy);
    item->set_child(*row);
    item->set_selectable(false);
    giveFocus();
}

const PendingNotification* NotificationListView::notification(guint position) const
{
    const auto& pending = *model_.pending();
    return position < pending.size() ? &pending[position] : nullptr;
}

} // namespace corvane
