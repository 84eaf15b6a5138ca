#include "ui/StyleSheet.h"

#include <gdkmm/display.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/stylecontext.h>

namespace corvane {
namespace {

constexpr const char* styleSheet = R"(
.nav-button, .nav-button > button {
    min-width: 18px;
    min-height: 18px;
    padding: 5px 4px;
    border-radius: 6px;
}
.nav-button:not(menubutton), .nav-button > button {
    border: 1.5px solid alpha(currentColor, 0.15);
    background-color: alpha(currentColor, 0.01);
}
.nav-button:not(menubutton):hover, .nav-button > button:hover {
    background-color: alpha(currentColor, 0.07);
}
.nav-button:not(menubutton):active, .nav-button > button:active, .nav-button > button:checked {
    background-color: alpha(@accent_bg_color, 0.25);
    opacity: 0.75;
}
menubutton.nav-button { padding: 0; }

.service-picker > button { padding-top: 2px; padding-bottom: 2px; min-height: 28px; }
.service-row { padding: 5px 8px; }
.url-field { min-height: 26px; }
.url-box {
    min-height: 24px;
    padding: 2px 9px;
    font-size: 13px;
    font-weight: normal;
    border-radius: 6px;
    border: 1px solid alpha(currentColor, 0.15);
    background-color: @view_bg_color;
    color: alpha(@view_fg_color, 0.55);
}
.toolbar-menu button { padding: 6px 12px; font-weight: normal; border-radius: 6px; }
)";

} // namespace

void addStyleSheet()
{
    const auto provider = Gtk::CssProvider::create();
    provider->load_from_data(styleSheet);
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

} // namespace corvane
