#include "ui/NotificationsView.h"

#include <string>

namespace corvane {
namespace {

constexpr int width = 540;
constexpr int height = 480;
constexpr int inset = 8;
constexpr int copiedMargin = 18;
constexpr guint copiedFades = 200; // milliseconds

} // namespace

NotificationsView::NotificationsView(NotificationsModel& model, DocumentViewFactory& documents, Gtk::Window& mainWindow,
                                     WindowMonitor& windows)
    : SheetFrame(mainWindow, windows, model.headline()), model_(model), documents_(documents), list_(model)
{
    set_default_size(width, height);
    set_size_request(width, height);
    detail_.set_margin(inset);
    stack_.add(list_);
    stack_.add(detail_);
    content().add_css_class("flush");
    content().append(stack_);
    buildButtons();
    buildCopiedLabel();
    closeWith([this] { model_.closeSheet(); }, [this] { model_.close(); });
    observations_.push_back(
        model_.effectiveSelection().bind([this](const std::optional<PendingNotification>&) { showSelection(); }));
    observations_.push_back(model_.pending().observe([this](const std::vector<PendingNotification>&) {
        list_.refresh();
        back_->set_visible(model_.effectiveSelection()->has_value() && model_.hasBack());
    }));
    observations_.push_back(model_.showCopied().observe([this](bool isShown) { copied_.set_reveal_child(isShown); }));
}

void NotificationsView::buildButtons()
{
    dismissAll_ = &addButtonAtStart("Dismiss All", Emphasis::secondary, [this] { model_.dismissAll(); });
    back_ = &addButtonAtStart("Back", Emphasis::secondary, [this] { model_.back(); });
    copy_ = &addButton("Copy", Emphasis::secondary, [this] { model_.copySelected(); });
    copy_->set_tooltip_text("Copy this notification to the clipboard");
    close_ = &addButton("Close", Emphasis::primary, [this] { model_.close(); });
}

void NotificationsView::buildCopiedLabel()
{
    auto* label = Gtk::make_managed<Gtk::Label>("Copied");
    label->add_css_class("copied-label");
    copied_.set_child(*label);
    copied_.set_transition_type(Gtk::RevealerTransitionType::CROSSFADE);
    copied_.set_transition_duration(copiedFades);
    copied_.set_halign(Gtk::Align::CENTER);
    copied_.set_valign(Gtk::Align::END);
    copied_.set_margin_bottom(copiedMargin);
    copied_.set_can_target(false);
    addOverlay(copied_);
}

void NotificationsView::showSelection()
{
    const bool isOpen = model_.effectiveSelection()->has_value();
    setHeadline(model_.headline());
    dismissAll_->set_visible(!isOpen);
    back_->set_visible(isOpen && model_.hasBack());
    copy_->set_visible(isOpen);
    close_->set_tooltip_text(isOpen ? "Mark as read and close" : "Close without marking as read");
    if (isOpen) {
        if (!document_) {
            document_ =
                std::make_unique<DocumentPane>(documents_, "Notification", model_.readerStyle(),
                                               [this](const DocumentLink& link) { return model_.followsLink(link); });
            detail_.append(*document_);
        }
        document_->show(model_.page());
        stack_.set_visible_child(detail_);
        set_default_widget(*close_);
        close_->grab_focus();
    } else {
        stack_.set_visible_child(list_);
        unset_default_widget(); // Return opens the line that has the focus.
        list_.focusLine();
    }
}

} // namespace corvane
