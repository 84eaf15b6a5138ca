#include "ui/PagePanelView.h"

#include <string>
#include <utility>

namespace corvane {
namespace {

constexpr const char* okResponse = "ok";
constexpr const char* cancelResponse = "cancel";

} // namespace

PagePanelView::PagePanelView(WebViewCoordinator& coordinator, Gtk::Window& mainWindow, KeyMonitor& keys)
    : coordinator_(coordinator), mainWindow_(mainWindow), keys_(keys)
{
    panels_ = coordinator_.panel().bind([this](const std::shared_ptr<PagePanel>& panel) { show(panel); });
}

PagePanelView::~PagePanelView()
{
    close();
}

void PagePanelView::show(const std::shared_ptr<PagePanel>& panel)
{
    close();
    if (panel)
        open(*panel);
}

void PagePanelView::open(const PagePanel& panel)
{
    const auto heading = panel.host().empty() ? std::string("This page says") : panel.host() + " says";
    dialog_ = GTK_WINDOW(adw_message_dialog_new(topmostWindow().gobj(), heading.c_str(), panel.message().c_str()));
    auto* dialog = ADW_MESSAGE_DIALOG(dialog_);
    if (panel.kind() != ScriptPanel::Kind::alert)
        adw_message_dialog_add_response(dialog, cancelResponse, "Cancel");
    adw_message_dialog_add_response(dialog, okResponse, "OK");
    adw_message_dialog_set_default_response(dialog, okResponse);
    adw_message_dialog_set_close_response(dialog, cancelResponse);
    adw_message_dialog_set_response_appearance(dialog, okResponse, ADW_RESPONSE_SUGGESTED);

    if (panel.kind() == ScriptPanel::Kind::prompt) {
        auto* entry = gtk_entry_new();
        gtk_widget_set_size_request(entry, 240, 24);
        gtk_editable_set_text(GTK_EDITABLE(entry), panel.defaultText().c_str());
        gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
        gtk_accessible_update_property(GTK_ACCESSIBLE(entry), GTK_ACCESSIBLE_PROPERTY_LABEL, "Answer", -1);
        adw_message_dialog_set_extra_child(dialog, entry);
        entry_ = GTK_EDITABLE(entry);
    }

    g_signal_connect(dialog, "response",
                     G_CALLBACK(+[](AdwMessageDialog*, char* response, gpointer self) {
                         static_cast<PagePanelView*>(self)->answered(response);
                     }),
                     this);
    keys_.watch(*Glib::wrap(GTK_WIDGET(dialog_)));
    gtk_window_present(dialog_);
}

/// The dialog goes without an answer of its own: nobody hears its response any more.
void PagePanelView::close()
{
    entry_ = nullptr;
    if (auto* dialog = std::exchange(dialog_, nullptr)) {
        g_signal_handlers_disconnect_by_data(dialog, this);
        gtk_window_destroy(dialog);
    }
}

void PagePanelView::answered(const char* response)
{
    const bool isAccepted = std::string_view(response) == okResponse;
    const std::string text = entry_ == nullptr ? "" : gtk_editable_get_text(entry_);
    entry_ = nullptr;
    dialog_ = nullptr; // The toolkit closes it after its response.
    if (isAccepted)
        coordinator_.acceptPanel(text);
    else
        coordinator_.dismissPanel();
}

Gtk::Window& PagePanelView::topmostWindow() const
{
    for (auto* window : Gtk::Window::list_toplevels()) {
        if (window != &mainWindow_ && window->is_visible() && window->get_modal())
            return *window;
    }
    return mainWindow_;
}

} // namespace corvane
