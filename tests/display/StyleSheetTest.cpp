#include "platform/FolderResources.h"
#include "screens/DialogStyleSheet.h"
#include "settings/Contrast.h"
#include "settings/DialogThemeOption.h"
#include "settings/ThemeManager.h"
#include "support/MainContext.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/box.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/label.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/togglebutton.h>
#include <gtkmm/window.h>

namespace corvane::testing {
namespace {

class StyleSheetTest : public ::testing::TestWithParam<DialogThemeOption> {
protected:
    StyleSheetTest()
    {
        provider->signal_parsing_error().connect(
            [this](const Glib::RefPtr<const Gtk::CssSection>& section, const Glib::Error& error) {
                errors += section->to_string() + ": " + error.what() + "\n";
            });
        provider->load_from_data(dialogStyleSheet(colors));
        Gtk::StyleContext::add_provider_for_display(display, provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    }
    ~StyleSheetTest() override
    {
        Gtk::StyleContext::remove_provider_for_display(display, provider);
        adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_DEFAULT);
    }

    /// The colour in which the text of a widget is drawn.
    static std::string shownColor(const Gtk::Widget& widget)
    {
        return widget.get_style_context()->get_color().to_string();
    }

    static std::string written(const Color& color)
    {
        return Gdk::RGBA(static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue),
                         static_cast<float>(color.opacity))
            .to_string();
    }

    FolderResources resources{{CORVANE_SOURCE_DIR "/resources"}};
    ThemeManager themes{resources};
    DialogThemeColors colors = themes.dialogColors(GetParam().value);
    Glib::RefPtr<Gdk::Display> display = Gdk::Display::get_default();
    Glib::RefPtr<Gtk::CssProvider> provider = Gtk::CssProvider::create();
    std::string errors;
};

TEST_P(StyleSheetTest, IsReadWholeByTheToolkitAndWinsOverTheDesktopsScheme)
{
    EXPECT_EQ(errors, "");

    Gtk::Window window;
    Gtk::Box box;
    window.set_child(box);
    window.add_css_class("themed-dialog");
    std::vector<std::pair<Gtk::Label*, Color>> labels;
    const auto addLabel = [&](const char* name, const Color& color) {
        auto* label = Gtk::make_managed<Gtk::Label>("x");
        label->add_css_class(name);
        box.append(*label);
        labels.emplace_back(label, color);
    };
    const auto addButton = [&](const std::vector<Glib::ustring>& classes, const Color& color, bool isChecked = false) {
        auto* button = Gtk::make_managed<Gtk::ToggleButton>();
        auto* label = Gtk::make_managed<Gtk::Label>("x");
        button->set_child(*label);
        button->set_css_classes(classes);
        button->set_active(isChecked);
        box.append(*button);
        labels.emplace_back(label, color);
    };
    addLabel("plain", colors.text);
    addLabel("card", colors.text);
    addLabel("muted", colors.textMuted);
    addLabel("dialog-title", colors.headingText);
    addButton({"secondary"}, colors.text);
    addButton({"flat-row"}, colors.text);
    addButton({"icon-button", "flat"}, colors.text);
    addButton({"link-button", "link"}, colors.link);
    addButton({"support-address", "white"}, Color::white());
    addButton({"donate"}, colors.buttonDonateText);
    addButton({"primary", "suggested-action"}, readableOn(colors.buttonPrimary));
    addButton({"segment"}, readableOn(colors.buttonPrimary), true);
    addButton({"segment"}, colors.text);

    for (const auto scheme : {ADW_COLOR_SCHEME_FORCE_LIGHT, ADW_COLOR_SCHEME_FORCE_DARK}) {
        adw_style_manager_set_color_scheme(adw_style_manager_get_default(), scheme);
        window.present();
        ASSERT_TRUE(iterateUntil([&] { return window.is_active(); }));
        for (std::size_t i = 0; i < labels.size(); ++i)
            EXPECT_EQ(shownColor(*labels[i].first), written(labels[i].second)) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Themes, StyleSheetTest, ::testing::ValuesIn(dialogThemeOptions),
                         [](const auto& info) { return std::string(info.param.value); });

} // namespace
} // namespace corvane::testing
