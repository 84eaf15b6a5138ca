#include "settings/DialogThemeColors.h"

#include "settings/ThemeDefaults.h"

namespace corvane {
namespace {

Color colorOr(const Color& fallback, const std::optional<std::string>& text)
{
    return text.and_then(parseCSSColor).value_or(fallback);
}

Color colorOr(const Color& fallback, const std::vector<std::string>& texts, std::size_t index)
{
    return index < texts.size() ? parseCSSColor(texts[index]).value_or(fallback) : fallback;
}

DialogThemeColors makeDefaultDialogColors()
{
    using namespace themedefaults;
    return {
        .background1 = colorFromHex(background[0]),
        .background2 = colorFromHex(background[1]),
        .background3 = colorFromHex(background[2]),
        .card1 = colorFromHex(card[0]),
        .card2 = colorFromHex(card[1]),
        .card3 = colorFromHex(card[2]),
        .text = Color::white(),
        .textMuted = colorFromHex(textMuted),
        .headingText = Color::white(),
        .link = colorFromHex(link),
        .buttonPrimary = colorFromHex(buttonPrimary),
        .buttonDonate = colorFromHex(buttonDonate),
        .buttonDonateText = Color::black(),
        .cornerRadius = static_cast<double>(borderRadius),
        .buttonCornerRadius = static_cast<double>(buttonBorderRadius),
    };
}

} // namespace

const DialogThemeColors& defaultDialogColors()
{
    static const auto colors = makeDefaultDialogColors();
    return colors;
}

DialogThemeColors resolvedDialogColors(const ThemeJSON& theme)
{
    const auto& [colors, spacing, effects] = theme;
    const auto& fallback = defaultDialogColors();
    const auto text = colorOr(fallback.text, colors.text);
    return {
        .background1 = colorOr(fallback.background1, colors.background, 0),
        .background2 = colorOr(fallback.background2, colors.background, 1),
        .background3 = colorOr(fallback.background3, colors.background, 2),
        .card1 = colorOr(fallback.card1, colors.card, 0),
        .card2 = colorOr(fallback.card2, colors.card, 1),
        .card3 = colorOr(fallback.card3, colors.card, 2),
        .text = text,
        .textMuted = colorOr(fallback.textMuted, colors.textMuted),
        .headingText = colorOr(text, colors.headingText),
        .link = colorOr(fallback.link, colors.link),
        .buttonPrimary = colorOr(fallback.buttonPrimary, colors.buttonPrimary),
        // The secondary button's colour stands in for a donation colour that is absent, not for one that is unreadable.
        .buttonDonate =
            colorOr(fallback.buttonDonate, colors.buttonDonate ? colors.buttonDonate : colors.buttonSecondary),
        .buttonDonateText = colorOr(fallback.buttonDonateText, colors.buttonDonateText),
        .cornerRadius = static_cast<double>(spacing.borderRadius.value_or(themedefaults::borderRadius)),
        .buttonCornerRadius =
            static_cast<double>(spacing.buttonBorderRadius.value_or(themedefaults::buttonBorderRadius)),
    };
}

} // namespace corvane
