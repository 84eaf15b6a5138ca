#include "ui/AnalyticsConsentView.h"

#include <string>
#include <utility>

#include <gtkmm/image.h>

namespace corvane {
namespace {

constexpr int width = 460;

Gtk::Image* icon(std::string_view name, int size)
{
    auto* image = Gtk::make_managed<Gtk::Image>();
    image->set_from_icon_name(std::string(name));
    image->set_pixel_size(size);
    image->set_valign(Gtk::Align::START);
    return image;
}

Gtk::Label* wrapped(std::string_view text)
{
    auto* label = Gtk::make_managed<Gtk::Label>(std::string(text));
    label->set_wrap(true);
    label->set_xalign(0);
    label->set_max_width_chars(50);
    return label;
}

} // namespace

AnalyticsConsentView::AnalyticsConsentView(AnalyticsConsentModel& model, Gtk::Window& mainWindow,
                                           WindowMonitor& windows, std::function<void()> dismissed)
    : SheetFrame(mainWindow, windows, std::string(AnalyticsConsentModel::title)), model_(model)
{
    set_size_request(width, -1);
    auto* emblem = icon("corvane-analytics-symbolic", 24);
    emblem->set_valign(Gtk::Align::CENTER);
    auto* balance = Gtk::make_managed<Gtk::Box>(); // keeps the title in the middle
    balance->set_size_request(24, -1);
    addToHeader(*emblem, *balance);

    content().set_spacing(12);
    addText(AnalyticsConsentModel::introduction, "introduction");
    auto* policy = Gtk::make_managed<Gtk::Button>(std::string(AnalyticsConsentModel::policyLink));
    policy->set_halign(Gtk::Align::START);
    policy->add_css_class("link-button");
    policy->signal_clicked().connect([this] { model_.showPrivacyPolicy(); });
    content().append(*policy);
    addText(AnalyticsConsentModel::note, "muted");
    for (const auto& card : AnalyticsConsentModel::cards)
        addCard(card);

    addButton("Disable Analytics", Emphasis::secondary, [this] { model_.answer(false); });
    addButton("Enable Analytics", Emphasis::primary, [this] { model_.answer(true); });
    closeWith(std::move(dismissed), nullptr);
}

void AnalyticsConsentView::addText(std::string_view text, const char* style)
{
    auto* label = wrapped(text);
    label->add_css_class(style);
    content().append(*label);
}

void AnalyticsConsentView::addCard(const AnalyticsConsentModel::Card& card)
{
    auto* texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    auto* heading = wrapped(card.heading);
    heading->add_css_class("heading");
    texts->append(*heading);
    texts->append(*wrapped(card.text));

    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 14);
    box->add_css_class("card");
    box->append(*icon(card.icon, 24));
    box->append(*texts);
    content().append(*box);
}

} // namespace corvane
