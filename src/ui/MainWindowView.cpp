#include "ui/MainWindowView.h"

#include "platform/WebKitViewFactory.h"
#include "state/AppState.h"

namespace corvane {

MainWindowView::MainWindowView(const Models& models)
    : model_(models.window), toolbar_(models.toolbar, models.selector, models.window.appState(), models.windows.keys()),
      panels_(models.coordinator, *this, models.windows)
{
    set_default_size(1024, 768);
    set_size_request(800, 600);
    set_titlebar(toolbar_);
    set_child(*Glib::wrap(WebKitViewFactory::widget(models.browser)));
    models.windows.watchMainWindow(*this);
    observations_.push_back(
        model_.appState().title.bind([this](const std::string&) { set_title(model_.windowTitle()); }));
    // A page that fills the screen has it to itself.
    property_fullscreened().signal_changed().connect([this] { toolbar_.set_visible(!is_fullscreen()); });
    get_child()->grab_focus();
}

MainWindowView::~MainWindowView()
{
    unset_child(); // The view belongs to the browser, not to the window.
}

} // namespace corvane
