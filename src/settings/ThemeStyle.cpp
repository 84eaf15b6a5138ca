#include "settings/ThemeStyle.h"

#include "settings/ThemeDefaults.h"

#include <fmt/format.h>

namespace corvane {
namespace {

/// The declarations "name:value", joined by ";".
class Declarations {
public:
    void add(std::string_view name, std::string_view value)
    {
        if (!text_.empty())
            text_ += ';';
        text_.append(name).append(":").append(value);
    }
    void add(std::string_view name, const std::optional<std::string>& value, std::string_view fallback)
    {
        add(name, value ? std::string_view(*value) : fallback);
    }
    void add(std::string_view name, const std::vector<std::string>& values, std::size_t index,
             std::string_view fallback)
    {
        add(name, index < values.size() ? std::string_view(values[index]) : fallback);
    }
    void addPixels(std::string_view name, const std::optional<std::int64_t>& pixels, std::int64_t fallback)
    {
        add(name, fmt::format("{}px", pixels.value_or(fallback)));
    }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

void addSurfaces(Declarations& css, const ThemeJSON::Colors& colors)
{
    css.add("--bg-1", colors.background, 0, themedefaults::background[0]);
    css.add("--bg-2", colors.background, 1, themedefaults::background[1]);
    css.add("--bg-3", colors.background, 2, themedefaults::background[2]);
    css.add("--card-1", colors.card, 0, themedefaults::card[0]);
    css.add("--card-2", colors.card, 1, themedefaults::card[1]);
    css.add("--card-3", colors.card, 2, themedefaults::card[2]);
    css.add("--card-border", colors.cardBorder, "rgba(81,99,117,0.8)");
    css.add("--list-background", colors.listBackground, "var(--card-2)");
}

void addTexts(Declarations& css, const ThemeJSON::Colors& colors)
{
    css.add("--text", colors.text, "#ffffff");
    css.add("--text-muted", colors.textMuted, themedefaults::textMuted);
    css.add("--content-text", colors.contentText, "var(--text)");
    css.add("--content-background", colors.contentBackground, "transparent");
    css.add("--link", colors.link, themedefaults::link);
}

void addButtonsAndHeadings(Declarations& css, const ThemeJSON::Colors& colors)
{
    css.add("--btn-primary", colors.buttonPrimary, themedefaults::buttonPrimary);
    css.add("--btn-donate", colors.buttonDonate ? colors.buttonDonate : colors.buttonSecondary,
            themedefaults::buttonDonate);
    css.add("--btn-donate-text", colors.buttonDonateText, "#ffffff");
    css.add("--btn-secondary", colors.buttonSecondary, themedefaults::buttonDonate);
    css.add("--btn-secondary-text", colors.buttonSecondaryText, "#1a1a1a");
    css.add("--btn-bevel-light", colors.buttonBevelLight, "rgba(255,255,255,0.45)");
    css.add("--btn-bevel-dark", colors.buttonBevelDark, "rgba(0,0,0,0.45)");
    css.add("--btn-bevel-dark-right", colors.buttonBevelDarkRight, "rgba(0,0,0,0.35)");
    css.add("--heading-text", colors.headingText, "var(--text)");
    css.add("--heading-text-shadow", colors.headingTextShadow, "none");
}

void addMeasures(Declarations& css, const ThemeJSON::Spacing& spacing)
{
    css.addPixels("--spacing-padding", spacing.padding, 15);
    css.add("--spacing-card-padding", spacing.cardPadding, "20px 26px");
    css.addPixels("--spacing-gap", spacing.gap, 8);
    css.addPixels("--spacing-radius", spacing.borderRadius, themedefaults::borderRadius);
    css.addPixels("--spacing-btn-radius", spacing.buttonBorderRadius, themedefaults::buttonBorderRadius);
}

void addShadows(Declarations& css, const ThemeJSON::Effects& effects)
{
    css.add("--card-box-shadow", effects.cardBoxShadow, "0 8px 32px rgba(0,0,0,0.2)");
    css.add("--btn-box-shadow", effects.btnBoxShadow, "none");
}

} // namespace

std::string themeStyleBlock(const ThemeJSON& theme)
{
    Declarations css;
    addSurfaces(css, theme.colors);
    addTexts(css, theme.colors);
    addButtonsAndHeadings(css, theme.colors);
    addMeasures(css, theme.spacing);
    addShadows(css, theme.effects);
    return "<style id=\"theme-vars\">:root{" + css.text() + "}</style>";
}

} // namespace corvane
