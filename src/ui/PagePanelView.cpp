#include "ui/PagePanelView.h"

#include "ui/Accessible.h"

#include <string>
#include <utility>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

namespace corvane {

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
    auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
    content->append(*messageOf(panel));
    if (panel.kind() == ScriptPanel::Kind::prompt)
        content->append(*answerField(panel));
    dialog_ = std::make_unique<MessageDialog>(
        mainWindow_, windows_,
        MessageDialog::Content{.heading = panel.heading(),
                               .body = {},
                               .cancelLabel = panel.hasCancel() ? std::optional<std::string>("Cancel") : std::nullopt,
                               .extra = content},
        [this](MessageDialog::Answer answer) { answered(answer); });
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

void PagePanelView::close()
{
    answer_ = nullptr;
    dialog_.reset();
}

void PagePanelView::answered(MessageDialog::Answer answer)
{
    const auto text = answer_ == nullptr ? std::string() : answer_->get_text().raw();
    answer_ = nullptr;
    if (answer == MessageDialog::Answer::accept)
        coordinator_.acceptPanel(text);
    else
        coordinator_.dismissPanel();
}

} // namespace corvane
