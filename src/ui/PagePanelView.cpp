#include "ui/PagePanelView.h"

#include "ui/Accessible.h"

#include <string>
#include <utility>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

namespace corvane {
namespace {

constexpr const char* okResponse = "ok";
constexpr const char* cancelResponse = "cancel";

} // namespace

PagePanelView::PagePanelView(WebViewCoordinator& coordinator, Gtk::Window& mainWindow, WindowMonitor& windows)
    : coordinator_(coordinator), mainWindow_(mainWindow), windows_(windows)
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
    dialog_ = GTK_WINDOW(adw_message_dialog_new(topmostWindow().gobj(), panel.heading().c_str(), nullptr));
    auto* dialog = ADW_MESSAGE_DIALOG(dialog_);
    if (panel.hasCancel())
        adw_message_dialog_add_response(dialog, cancelResponse, "Cancel");
    adw_message_dialog_add_response(dialog, okResponse, "OK");
    adw_message_dialog_set_default_response(dialog, okResponse);
    adw_message_dialog_set_close_response(dialog, cancelResponse);
    adw_message_dialog_set_response_appearance(dialog, okResponse, ADW_RESPONSE_SUGGESTED);

    auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
    content->append(*messageOf(panel));
    if (panel.kind() == ScriptPanel::Kind::prompt)
        content->append(*answerField(panel));
    adw_message_dialog_set_extra_child(dialog, content->Gtk::Widget::gobj());

    g_signal_connect(dialog, "response", G_CALLBACK(+[](AdwMessageDialog*, char* response, gpointer self) {
                         static_cast<PagePanelView*>(self)->answered(response);
                     }),
                     this);
    windows_.watch(*Glib::wrap(dialog_));
    gtk_window_present(dialog_);
}

/// Scrolls when it is long: a page must not be able to push the buttons off the screen.
Gtk::Widget* PagePanelView::messageOf(const PagePanel& panel)
{
    auto* text = Gtk::make_managed<Gtk::Label>(panel.message());
    text->set_wrap(true);
    text->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    text->set_max_width_chars(50);
    text->set_justify(Gtk::Justification::CENTER);
    text->set_selectable(true);
    text->set_can_focus(false);
    auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height(true);
    scroller->set_max_content_height(300);
    scroller->set_child(*text);
    return scroller;
}

Gtk::Widget* PagePanelView::answerField(const PagePanel& panel)
{
    answer_ = Gtk::make_managed<Gtk::Entry>();
    answer_->set_size_request(240, 24);
    answer_->set_text(panel.defaultText());
    answer_->set_activates_default(true);
    setAccessibleName(*answer_, "Answer");
    return answer_;
}

/// The dialog goes without an answer of its own: nobody hears its response any more.
void PagePanelView::close()
{
    answer_ = nullptr;
    if (auto* dialog = std::exchange(dialog_, nullptr)) {
        g_signal_handlers_disconnect_by_data(dialog, this);
        gtk_window_destroy(dialog);
    }
}

void PagePanelView::answered(const char* response)
{
    const bool isAccepted = std::string_view(response) == okResponse;
    const auto text = answer_ == nullptr ? std::string() : answer_->get_text().raw();
    answer_ = nullptr;
    dialog_ = nullptr; // The toolkit closes it after its response.
    if (isAccepted)
        coordinator_.acceptPanel(text);
    else
        coordinator_.dismissPanel();
}

Gtk::Window& PagePanelView::topmostWindow() const
{
    auto* topmost = &mainWindow_;
    for (auto* window : Gtk::Window::list_toplevels()) {
        // Modal windows stack by being transient for each other.
        if (window->is_visible() && window->get_modal() && (window->is_active() || topmost == &mainWindow_))
            topmost = window;
    }
    return *topmost;
}

} // namespace corvane
