#include "ui/MessageDialog.h"

#include "ui/TopmostWindow.h"

#include <string_view>
#include <utility>

namespace corvane {
namespace {

constexpr const char* acceptResponse = "accept";
constexpr const char* cancelResponse = "cancel";

} // namespace

MessageDialog::MessageDialog(Gtk::Window& mainWindow, WindowMonitor& windows, const Content& content,
                             std::function<void(Answer)> answered)
    : answered_(std::move(answered)),
      dialog_(GTK_WINDOW(adw_message_dialog_new(topmostWindow(mainWindow).gobj(), content.heading.c_str(),
                                                content.body.empty() ? nullptr : content.body.c_str())))
{
    auto* dialog = ADW_MESSAGE_DIALOG(dialog_);
    if (content.cancelLabel)
        adw_message_dialog_add_response(dialog, cancelResponse, content.cancelLabel->c_str());
    adw_message_dialog_add_response(dialog, acceptResponse, content.acceptLabel.c_str());
    adw_message_dialog_set_default_response(dialog, acceptResponse);
    adw_message_dialog_set_close_response(dialog, cancelResponse);
    adw_message_dialog_set_response_appearance(dialog, acceptResponse, ADW_RESPONSE_SUGGESTED);
    // Whatever it covers may go by itself; the message stays until somebody has read it.
    gtk_window_set_destroy_with_parent(dialog_, FALSE);
    if (content.extra != nullptr)
        adw_message_dialog_set_extra_child(dialog, content.extra->gobj());
    g_signal_connect(dialog, "response", G_CALLBACK(+[](AdwMessageDialog*, char* response, gpointer self) {
                         static_cast<MessageDialog*>(self)->responded(response);
                     }),
                     this);
    g_signal_connect(dialog, "destroy", G_CALLBACK(+[](AdwMessageDialog*, gpointer self) {
                         static_cast<MessageDialog*>(self)->responded(cancelResponse);
                     }),
                     this);
    windows.watch(*Glib::wrap(dialog_));
    gtk_window_present(dialog_);
}

MessageDialog::~MessageDialog()
{
    if (dialog_ == nullptr)
        return;
    g_signal_handlers_disconnect_by_data(dialog_, this);
    gtk_window_destroy(dialog_);
}

void MessageDialog::responded(const char* response)
{
    const auto answer = std::string_view(response) == acceptResponse ? Answer::accept : Answer::cancel;
    g_signal_handlers_disconnect_by_data(dialog_, this);
    // The toolkit closes it after its response. It hides now, so that what the answer shows does not lie over it.
    gtk_widget_set_visible(GTK_WIDGET(std::exchange(dialog_, nullptr)), FALSE);
    std::exchange(answered_, nullptr)(answer);
}

} // namespace corvane
