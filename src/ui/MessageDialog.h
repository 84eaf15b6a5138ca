#pragma once

#include "ui/WindowMonitor.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <adwaita.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

namespace corvane {

/// A modal message over the top-most window of the program, with one or two answers. Escape and closing it answer as
/// "cancel" does, and so does its end by other means. All texts are plain.
class MessageDialog {
public:
    enum class Answer : std::uint8_t { accept, cancel };

    struct Content {
        std::string heading;
        std::string body;
        std::string acceptLabel = "OK";
        std::optional<std::string> cancelLabel;
        Gtk::Widget* extra = nullptr; // shown below the body; goes with the dialog
    };

    /// Shows the dialog. `answered` is called once and may destroy this object; destroying it before that closes the
    /// dialog without an answer. `windows` must outlive it.
    MessageDialog(Gtk::Window& mainWindow, WindowMonitor& windows, const Content& content,
                  std::function<void(Answer)> answered);
    ~MessageDialog();
    MessageDialog(const MessageDialog&) = delete;
    MessageDialog& operator=(const MessageDialog&) = delete;

private:
    void responded(const char* response);

    std::function<void(Answer)> answered_;
    GtkWindow* dialog_; // owned by the toolkit until it is destroyed; null once it has been answered
};

} // namespace corvane
