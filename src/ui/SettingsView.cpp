#include "ui/SettingsView.h"

#include "settings/DialogThemeOption.h"
#include "ui/Accessible.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtkmm/separator.h>
#include <gtkmm/stringlist.h>

namespace corvane {
namespace {

constexpr int formWidth = 400;
constexpr int padding = 20;

} // namespace

SettingsView::SettingsView(SettingsModel& model, Gtk::Window& mainWindow, WindowMonitor& windows)
    : SheetFrame(mainWindow, windows, "Settings"), model_(model)
{
    content().add_css_class("form");
    content().set_size_request(formWidth + 2 * padding, -1);
    content().set_spacing(18);

    auto& appearance = addSection("Appearance");
    buildWindowTheme(appearance);
    appearance.append(*Gtk::make_managed<Gtk::Separator>());
    buildDialogTheme(appearance);
    auto& privacy = addSection("Privacy & Analytics");
    buildSwitch(privacy, "Enable analytics", analytics_, [this](bool isOn) { model_.enableAnalytics(isOn); });
    privacy.append(*Gtk::make_managed<Gtk::Separator>());
    buildPolicyLink(privacy);
    buildSwitch(addSection("Updates"), "Allow service list updates", listUpdates_,
                [this](bool isOn) { model_.allowSiteListUpdates(isOn); });

    addButton("Cancel", Emphasis::secondary, [this] { model_.cancel(); });
    addButton("OK", Emphasis::primary, [this] { model_.accept(); });
    closeWith([this] { model_.cancel(); });
    draftChanges_ = model_.draft().bind([this](const AppSettings&) { showDraft(); });
}

Gtk::Box& SettingsView::addSection(const std::string& title)
{
    auto* heading = Gtk::make_managed<Gtk::Label>(title);
    heading->set_xalign(0);
    heading->add_css_class("heading");
    auto* rows = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    rows->add_css_class("card");
    rows->add_css_class("rows");
    auto* section = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 6);
    section->append(*heading);
    section->append(*rows);
    content().append(*section);
    return *rows;
}

void SettingsView::addRow(Gtk::Box& section, const std::string& title, Gtk::Widget& control)
{
    auto* label = Gtk::make_managed<Gtk::Label>(title);
    label->set_xalign(0);
    label->set_hexpand(true);
    control.set_valign(Gtk::Align::CENTER);
    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 16);
    row->add_css_class("row");
    row->append(*label);
    row->append(control);
    section.append(*row);
}

void SettingsView::buildWindowTheme(Gtk::Box& section)
{
    segments_.add_css_class("linked");
    setAccessibleName(segments_, "Window theme");
    for (std::size_t index = 0; index < windowThemes_.size(); ++index) {
        auto& segment = windowThemes_.at(index);
        segment.set_label(std::string(SettingsModel::windowThemes.at(index)));
        segment.add_css_class("segment");
        setAccessibleDescription(segment, "Window theme");
        if (index > 0)
            segment.set_group(windowThemes_.front());
        segment.signal_toggled().connect([this, index] {
            if (!isShowing_ && windowThemes_.at(index).get_active())
                model_.pickWindowTheme(index);
        });
        segments_.append(segment);
    }
    addRow(section, "Window theme", segments_);
}

void SettingsView::buildDialogTheme(Gtk::Box& section)
{
    std::vector<Glib::ustring> labels;
    labels.reserve(dialogThemeOptions.size());
    for (const auto& option : dialogThemeOptions)
        labels.emplace_back(std::string(option.label));
    dialogTheme_.set_model(Gtk::StringList::create(labels));
    dialogTheme_.property_selected().signal_changed().connect([this] {
        if (!isShowing_ && dialogTheme_.get_selected() != GTK_INVALID_LIST_POSITION)
            model_.pickDialogTheme(dialogTheme_.get_selected());
    });
    setAccessibleName(dialogTheme_, "Dialog theme");
    addRow(section, "Dialog theme", dialogTheme_);
}

void SettingsView::buildSwitch(Gtk::Box& section, const std::string& title, Gtk::Switch& control,
                               std::function<void(bool)> switched)
{
    control.property_active().signal_changed().connect([this, &control, switched = std::move(switched)] {
        if (!isShowing_)
            switched(control.get_active());
    });
    setAccessibleName(control, title);
    addRow(section, title, control);
}

void SettingsView::buildPolicyLink(Gtk::Box& section)
{
    auto* link = Gtk::make_managed<Gtk::Button>("Privacy Policy");
    link->add_css_class("link-button");
    link->set_halign(Gtk::Align::START);
    link->signal_clicked().connect([this] { model_.showPrivacyPolicy(); });
    auto* row = Gtk::make_managed<Gtk::Box>();
    row->add_css_class("row");
    row->append(*link);
    section.append(*row);
}

void SettingsView::showDraft()
{
    isShowing_ = true;
    const auto windowTheme = model_.windowTheme();
    for (std::size_t index = 0; index < windowThemes_.size(); ++index)
        windowThemes_.at(index).set_active(windowTheme == index);
    const auto dialogTheme = model_.dialogTheme();
    dialogTheme_.set_selected(dialogTheme ? static_cast<guint>(*dialogTheme) : GTK_INVALID_LIST_POSITION);
    analytics_.set_active(model_.isAnalyticsEnabled());
    listUpdates_.set_active(model_.allowsSiteListUpdates());
    isShowing_ = false;
}

} // namespace corvane
