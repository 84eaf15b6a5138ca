#include "ui/ToolbarView.h"

#include "ui/Accessible.h"

#include <string>

#include <gtkmm/button.h>

namespace corvane {

ToolbarView::ToolbarView(ToolbarModel& model, SiteSelectorModel& selector, AppState& appState, KeyMonitor& keys)
    : selector_(selector, appState, keys), menu_(model, keys)
{
    buttons_.set_valign(Gtk::Align::CENTER);
    for (const auto& button : ToolbarModel::buttons)
        addButton(model, button);
    pack_start(buttons_);
    set_title_widget(selector_);
    pack_end(menu_);
}

void ToolbarView::addButton(ToolbarModel& model, const ToolbarModel::Button& button)
{
    auto* widget = Gtk::make_managed<Gtk::Button>();
    widget->set_icon_name(std::string(button.icon));
    widget->set_tooltip_text(std::string(button.tooltip));
    widget->add_css_class("nav-button");
    widget->set_focus_on_click(false);
    setAccessibleName(*widget, std::string(button.tooltip));
    widget->signal_clicked().connect([&model, button] { model.press(button); });
    observations_.push_back(
        model.isEnabled(button.action).bind([widget](bool isEnabled) { widget->set_sensitive(isEnabled); }));
    buttons_.append(*widget);
}

} // namespace corvane
