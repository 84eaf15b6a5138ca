#pragma once

#include "ui/WindowMonitor.h"

#include <functional>
#include <string>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/overlay.h>
#include <gtkmm/window.h>

namespace corvane {

/// The frame that all dialogs of the program share: a header with the title, the content, a footer with the buttons. A
/// modal window over the main one, in the colours of the dialog theme. Escape and closing the window are up to the
/// dialog.
class SheetFrame : public Gtk::Window {
public:
    /// What a button is for decides how it looks.
    enum class Emphasis : std::uint8_t {
        primary,   // the suggested one; Return presses it
        secondary, // any other
        donate,
    };

    /// `windows` must outlive this object.
    SheetFrame(Gtk::Window& mainWindow, WindowMonitor& windows, const std::string& title);

protected:
    /// Escape, and the window manager's button. `close` is what the dialog does then.
    void closeWith(const std::function<void()>& close);

    /// The same with two answers; without `escape` the key does nothing.
    void closeWith(std::function<void()> close, std::function<void()> escape);

    /// The title in the header and of the window; at most two lines, made fit for a title bar.
    void setHeadline(const std::string& text);

    /// Where the dialog puts what it shows; fills the frame between header and footer.
    Gtk::Box& content() { return content_; }

    /// Widgets in the header, before and after the title.
    void addToHeader(Gtk::Widget& start, Gtk::Widget& end);

    /// Appends a button to one end of the footer.
    Gtk::Button& addButton(const std::string& label, Emphasis emphasis, const std::function<void()>& pressed);
    Gtk::Button& addButtonAtStart(const std::string& label, Emphasis emphasis, const std::function<void()>& pressed);

    /// Something that lies over everything and takes no pointer.
    void addOverlay(Gtk::Widget& widget) { everything_.add_overlay(widget); }

    /// A button as the footer has it, for other places.
    static Gtk::Button& makeButton(const std::string& label, Emphasis emphasis, const std::function<void()>& pressed);

private:
    Gtk::Button& adopt(Gtk::Button& button, Emphasis emphasis);

    Gtk::Overlay everything_;
    Gtk::Box frame_{Gtk::Orientation::VERTICAL};
    Gtk::Box header_{Gtk::Orientation::HORIZONTAL, 8};
    Gtk::Label headline_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL};
    Gtk::Box footer_{Gtk::Orientation::HORIZONTAL, 10};
    Gtk::Box footerStart_{Gtk::Orientation::HORIZONTAL, 10};
    Gtk::Box footerEnd_{Gtk::Orientation::HORIZONTAL, 10};
};

} // namespace corvane
