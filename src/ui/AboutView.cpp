#include "ui/AboutView.h"

#include "ports/AppInfo.h"
#include "ui/Accessible.h"

#include <gtkmm/image.h>

namespace corvane {
namespace {

constexpr int iconSize = 80;

} // namespace

AboutView::AboutView(AboutModel& model, Gtk::Window& mainWindow, WindowMonitor& windows)
    : SheetFrame(mainWindow, windows, "About Corvane"), model_(model)
{
    content().set_spacing(6);
    auto* icon = Gtk::make_managed<Gtk::Image>();
    icon->set_from_icon_name(AppInfo::applicationId);
    icon->set_pixel_size(iconSize);
    content().append(*icon);
    addLine(std::string(AboutModel::productName), "product-name");
    addLine(std::string(AboutModel::tagline), "tagline");
    addLine(model_.versionLine(), "version-line");
    addLine(std::string(AboutModel::copyright), "muted");
    addSupport();
    addLinks();
    addButton("OK", Emphasis::primary, [this] { model_.close(); });
    closeWith([this] { model_.close(); });
}

void AboutView::addLine(const std::string& text, const char* style)
{
    auto* line = Gtk::make_managed<Gtk::Label>(text);
    line->add_css_class(style);
    line->set_wrap(true);
    line->set_max_width_chars(48);
    line->set_justify(Gtk::Justification::CENTER);
    content().append(*line);
}

void AboutView::addSupport()
{
    addLine(std::string(AboutModel::supportPrompt), "support-prompt");
    auto* address = Gtk::make_managed<Gtk::Button>(model_.supportAddress());
    address->set_halign(Gtk::Align::CENTER);
    address->add_css_class("support-address");
    if (model_.hasWhiteSupportAddress())
        address->add_css_class("white");
    address->signal_clicked().connect([this] { model_.writeToSupport(); });
    content().append(*address);
}

void AboutView::addLinks()
{
    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 10);
    row->set_halign(Gtk::Align::CENTER);
    row->add_css_class("links");
    row->append(makeButton("Privacy Policy", Emphasis::secondary, [this] { model_.showPrivacyPolicy(); }));
    row->append(makeButton("Software License", Emphasis::secondary, [this] { model_.showSoftwareLicense(); }));

    const std::string donate = "Donate with PayPal";
    auto* face = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    auto* heart = Gtk::make_managed<Gtk::Image>();
    heart->set_from_icon_name("corvane-heart-symbolic");
    face->append(*heart);
    face->append(*Gtk::make_managed<Gtk::Label>(donate));
    auto& button = makeButton(donate, Emphasis::donate, [this] { model_.donate(); });
    button.set_child(*face);
    setAccessibleName(button, donate);
    row->append(button);
    content().append(*row);
}

} // namespace corvane
