#include "ui/SiteSelectorView.h"

#include "async/MainLoop.h"
#include "state/AppState.h"
#include "ui/Accessible.h"
#include "ui/PageFocus.h"
#include "ui/TopmostWindow.h"

#include <string>

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/window.h>

namespace corvane {

SiteSelectorView::SiteSelectorView(SiteSelectorModel& model, AppState& appState, KeyMonitor& keys)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, 8), model_(model), appState_(appState), picker_(model, keys)
{
    set_valign(Gtk::Align::CENTER);
    label_.add_css_class("caption");
    label_.add_css_class("dim-label");
    append(label_);

    buildField();
    stack_.set_hhomogeneous(true);
    stack_.add(picker_);
    stack_.add(field_);
    stack_.add(box_);
    append(stack_);

    observations_.push_back(appState_.isURLMode.observe([this](bool isOn) {
        showMode();
        if (!isOn)
            focusPage(*this);
    }));
    observations_.push_back(model_.urlBarEditing.observe([this](bool) { showMode(); }));
    observations_.push_back(model_.urlFieldFocusRequested.observe([this](bool isRequested) {
        if (isRequested)
            focusField();
    }));
    observations_.push_back(appState_.urlModeBarText.observe([this](const std::string& text) {
        if (field_.get_text().raw() != text)
            field_.set_text(text);
    }));
    showMode();
}

void SiteSelectorView::buildField()
{
    const std::string placeholder(SiteSelectorModel::fieldPlaceholder);
    field_.set_placeholder_text(placeholder);
    field_.set_size_request(SiteSelectorModel::smallestWidth, 26);
    field_.set_input_purpose(Gtk::InputPurpose::URL);
    field_.add_css_class("url-field");
    setAccessibleName(field_, "Address");
    field_.signal_changed().connect([this] { appState_.urlModeBarText.set(field_.get_text().raw()); });
    field_.signal_activate().connect([this] { model_.submitAddress(); });

    // In the bubble phase: an input method that composes uses Escape first.
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::BUBBLE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint /*code*/, Gdk::ModifierType /*state*/) {
            if (key != GDK_KEY_Escape)
                return false;
            model_.leaveURLMode();
            return true;
        },
        false);
    field_.add_controller(keys);

    auto* text = Gtk::make_managed<Gtk::Label>(placeholder);
    text->set_xalign(0);
    box_.set_child(*text);
    box_.set_size_request(SiteSelectorModel::smallestWidth, 26);
    box_.add_css_class("url-box");
    setAccessibleName(box_, placeholder);
    box_.signal_clicked().connect([this] { model_.beginEditing(); });
}

void SiteSelectorView::showMode()
{
    label_.set_text(std::string(model_.label()));
    switch (model_.shown()) {
    case SiteSelectorModel::Shown::picker:
        stack_.set_visible_child(picker_);
        break;
    case SiteSelectorModel::Shown::field:
        stack_.set_visible_child(field_);
        break;
    case SiteSelectorModel::Shown::box:
        stack_.set_visible_child(box_);
        break;
    }
}

/// In a later turn, when the field is certain to be on the screen.
void SiteSelectorView::focusField()
{
    model_.urlFieldFocusRequested.set(false);
    focusing_ = callLater([this] {
        auto* window = dynamic_cast<Gtk::Window*>(get_root());
        if (window != nullptr && &topmostWindow(*window) == window) // no dialog has the keyboard
            window->present();
        field_.grab_focus();
    });
}

} // namespace corvane
