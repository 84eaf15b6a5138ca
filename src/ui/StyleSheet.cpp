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
.service-picker listview { background: none; }
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
.badge-dot { background-color: #e01b24; border-radius: 4px; min-width: 8px; min-height: 8px; }
.entry-badge { color: #e01b24; }
.download-shade { background-color: rgba(0, 0, 0, 0.18); }
.download-panel { background-color: alpha(@popover_bg_color, 0.96); color: @popover_fg_color; border-radius: 12px; }

.themed-dialog .dialog-header { min-height: 51px; padding: 0 20px; }
.themed-dialog .dialog-content { padding: 20px; }
.themed-dialog .dialog-content.flush { padding: 0; }
.themed-dialog .dialog-footer { padding: 16px; }
.themed-dialog .dialog-footer button { min-width: 72px; }
.themed-dialog .card { padding: 14px 16px; }
.themed-dialog .card.rows { padding: 0; }
.themed-dialog .row { padding: 10px 14px; }
.themed-dialog .row button { padding-top: 4px; padding-bottom: 4px; }
.themed-dialog .product-name { font-size: 1.9em; font-weight: bold; }
.themed-dialog .version-line { font-size: 1.05em; padding: 2px 0; }
.themed-dialog .support-prompt { padding-top: 12px; }
.themed-dialog .links { padding-top: 14px; }
.themed-dialog .status-row { padding: 10px 20px; }
.themed-dialog .notification-list { padding: 8px 12px; }
.themed-dialog .notification-list > row { padding: 0; border-radius: 8px; }
.themed-dialog .flat-row { padding: 4px; }
.themed-dialog .icon-button { padding: 0; }
.themed-dialog .link-button { padding: 2px 0; }
.themed-dialog .support-address { padding: 2px 4px; }
.themed-dialog .copied-label { padding: 6px 12px; }

.toolbar-menu > contents { padding: 6px; }
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
