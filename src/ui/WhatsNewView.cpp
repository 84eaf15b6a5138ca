#include "ui/WhatsNewView.h"

#include "ui/Accessible.h"

#include <string>

namespace corvane {

WhatsNewView::WhatsNewView(WhatsNewModel& model, DocumentViewFactory& documents, Gtk::Window& mainWindow,
                           WindowMonitor& windows)
    : SheetFrame(mainWindow, windows, model.title()), model_(model),
      document_(documents, "Release notes", model.readerStyle(),
                [&model](const DocumentLink& link) { return model.followsLink(link); })
{
    set_default_size(640, 560);
    set_resizable(true);
    status_.add_css_class("muted");
    status_.set_wrap(true);
    status_.set_hexpand(true);
    status_.set_justify(Gtk::Justification::CENTER);
    statusRow_.append(status_);
    statusRow_.add_css_class("status-row");
    content().add_css_class("flush");
    content().append(statusRow_);
    content().append(document_);
    if (model_.hasNavigation())
        buildNavigation();
    buildButtons();
    closeWith([this] { model_.close(); });
    observations_.push_back(model_.currentIndex().bind([this](std::int64_t) { showEntry(); }));
    observations_.push_back(model_.page().bind([this](const std::string& page) { document_.show(page); }));
}

void WhatsNewView::buildNavigation()
{
    const auto set = [](Gtk::Button& button, const char* icon, const char* name) {
        button.set_icon_name(icon);
        button.set_tooltip_text(name);
        button.set_valign(Gtk::Align::CENTER);
        button.add_css_class("icon-button");
        setAccessibleName(button, name);
    };
    set(older_, "corvane-back-symbolic", "Older update");
    set(newer_, "corvane-forward-symbolic", "Newer update");
    older_.signal_clicked().connect([this] { model_.showOlder(); });
    newer_.signal_clicked().connect([this] { model_.showNewer(); });
    addToHeader(older_, newer_);
}

void WhatsNewView::buildButtons()
{
    if (model_.offersUpdate()) {
        addButton("Cancel", Emphasis::secondary, [this] { model_.close(); });
        addButton("Update", Emphasis::primary, [this] { model_.update(); });
    } else {
        addButton("Close", Emphasis::primary, [this] { model_.close(); });
    }
}

void WhatsNewView::showEntry()
{
    setHeadline(model_.title());
    const auto status = model_.statusLine();
    status_.set_text(status.value_or(""));
    statusRow_.set_visible(status.has_value());
    older_.set_sensitive(model_.hasOlder());
    newer_.set_sensitive(model_.hasNewer());
}

} // namespace corvane
