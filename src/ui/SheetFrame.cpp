#include "ui/SheetFrame.h"

#include "base/Text.h"
#include "ui/Accessible.h"
#include "ui/TopmostWindow.h"

#include <utility>

#include <gtkmm/shortcut.h>
#include <gtkmm/shortcutaction.h>
#include <gtkmm/shortcutcontroller.h>
#include <gtkmm/shortcuttrigger.h>
#include <gtkmm/windowhandle.h>

namespace corvane {

SheetFrame::SheetFrame(Gtk::Window& mainWindow, WindowMonitor& windows, const std::string& title)
{
    setDialogRole(*this);
    add_css_class("themed-dialog");
    set_transient_for(topmostWindow(mainWindow));
    set_modal(true);
    set_resizable(false);

    headline_.add_css_class("dialog-title");
    headline_.set_wrap(true);
    headline_.set_lines(2);
    headline_.set_ellipsize(Pango::EllipsizeMode::END);
    headline_.set_justify(Gtk::Justification::CENTER);
    headline_.set_hexpand(true);
    header_.append(headline_);
    header_.add_css_class("dialog-header");
    header_.set_size_request(-1, 52);
    auto* handle = Gtk::make_managed<Gtk::WindowHandle>();
    handle->set_child(header_);
    set_titlebar(*handle);

    content_.add_css_class("dialog-content");
    content_.set_vexpand(true);
    frame_.append(content_);
    footer_.add_css_class("dialog-footer");
    footerEnd_.set_hexpand(true);
    footerEnd_.set_halign(Gtk::Align::END);
    footer_.append(footerStart_);
    footer_.append(footerEnd_);
    frame_.append(footer_);
    everything_.set_child(frame_);
    set_child(everything_);
    setHeadline(title);
    windows.watch(*this);
}

void SheetFrame::closeWith(const std::function<void()>& close)
{
    closeWith(close, close);
}

void SheetFrame::closeWith(std::function<void()> close, std::function<void()> escape)
{
    signal_close_request().connect(
        [close = std::move(close)] {
            close();
            return true; // The window goes when the program takes it away.
        },
        false);
    if (!escape)
        return;
    const auto keys = Gtk::ShortcutController::create();
    keys->set_scope(Gtk::ShortcutScope::MANAGED);
    keys->add_shortcut(Gtk::Shortcut::create(
        Gtk::KeyvalTrigger::create(GDK_KEY_Escape),
        Gtk::CallbackAction::create([escape = std::move(escape)](Gtk::Widget&, const Glib::VariantBase&) {
            escape();
            return true;
        })));
    add_controller(keys);
}

void SheetFrame::setHeadline(const std::string& text)
{
    const auto title = safeTitle(text);
    headline_.set_text(title);
    set_title(title);
}

void SheetFrame::addToHeader(Gtk::Widget& start, Gtk::Widget& end)
{
    header_.prepend(start);
    header_.append(end);
}

Gtk::Button& SheetFrame::makeButton(const std::string& label, Emphasis emphasis, const std::function<void()>& pressed)
{
    auto* button = Gtk::make_managed<Gtk::Button>(label);
    switch (emphasis) {
    case Emphasis::primary:
        button->add_css_class("primary");
        break;
    case Emphasis::secondary:
        button->add_css_class("secondary");
        break;
    case Emphasis::donate:
        button->add_css_class("donate");
        break;
    }
    button->signal_clicked().connect(pressed);
    return *button;
}

Gtk::Button& SheetFrame::addButton(const std::string& label, Emphasis emphasis, const std::function<void()>& pressed)
{
    auto& button = makeButton(label, emphasis, pressed);
    footerEnd_.append(button);
    return adopt(button, emphasis);
}

Gtk::Button& SheetFrame::addButtonAtStart(const std::string& label, Emphasis emphasis,
                                          const std::function<void()>& pressed)
{
    auto& button = makeButton(label, emphasis, pressed);
    footerStart_.append(button);
    return adopt(button, emphasis);
}

Gtk::Button& SheetFrame::adopt(Gtk::Button& button, Emphasis emphasis)
{
    if (emphasis == Emphasis::primary) {
        set_default_widget(button);
        set_focus(button);
    }
    return button;
}

} // namespace corvane
