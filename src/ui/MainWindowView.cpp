#include "ui/MainWindowView.h"

#include "platform/WebKitViewFactory.h"
#include "state/AppState.h"

namespace corvane {

MainWindowView::MainWindowView(const Models& models)
    : model_(models.window), toolbarModel_(models.toolbar), windows_(models.windows),
      toolbar_(models.toolbar, models.selector, models.window.appState(), models.windows.keys()),
      download_(models.window.installer(), *this, models.windows), panels_(models.coordinator, *this, models.windows),
      sheets_(models.sheets, *this, models.windows)
{
    set_default_size(1024, 768);
    set_size_request(800, 600);
    set_titlebar(toolbar_);
    layers_.set_child(*Glib::wrap(WebKitViewFactory::widget(models.browser)));
    layers_.add_overlay(download_);
    set_child(layers_);
    models.windows.watchMainWindow(*this);
    observations_.push_back(
        model_.appState().title.bind([this](const std::string&) { set_title(model_.windowTitle()); }));
    observations_.push_back(
        toolbarModel_.alert().observe([this](const std::optional<Alert>& alert) { showAlert(alert); }));
    // A page that fills the screen has it to itself.
    property_fullscreened().signal_changed().connect([this] { toolbar_.set_visible(!is_fullscreen()); });
    layers_.get_child()->grab_focus();
}

MainWindowView::~MainWindowView()
{
    layers_.unset_child(); // The view belongs to the browser, not to the window.
}

void MainWindowView::showAlert(const std::optional<Alert>& alert)
{
    alert_.reset();
    if (!alert)
        return;
    alert_ = std::make_unique<MessageDialog>(
        *this, windows_, MessageDialog::Content{.heading = alert->message, .body = alert->informativeText},
        [this](MessageDialog::Answer) { toolbarModel_.dismissAlert(); });
}

} // namespace corvane
