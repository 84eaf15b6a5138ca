#include "screens/DialogStyleSheet.h"

#include "screens/DialogStyleTemplate.h"
#include "settings/Contrast.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <string_view>

#include <fmt/format.h>

namespace corvane {
namespace {

/// Larger corners than these are a mistake of the theme.
constexpr double largestRadius = 100;

std::string cssText(const Color& color, double share = 1)
{
    const auto byte = [](double component) { return std::lround(std::clamp(component, 0.0, 1.0) * 255); };
    return fmt::format("rgba({},{},{},{:.3f})", byte(color.red), byte(color.green), byte(color.blue),
                       std::clamp(color.opacity, 0.0, 1.0) * share);
}

std::string cssText(double points)
{
    return fmt::format("{:.1f}px", std::clamp(points, 0.0, largestRadius));
}

/// A stop of the background as it is seen: a translucent one lies on black or white, whichever carries the text.
Color opaque(const Color& background, const DialogThemeColors& colors)
{
    return composed(background, readableOn(colors.text));
}

/// A fill that stands out from `fill` by `share` and carries the label better still.
Color pressed(const Color& fill, const Color& label, double share)
{
    auto shade = readableOn(label);
    shade.opacity = share;
    return composed(shade, fill);
}

struct Fill {
    Color color;
    Color label;
    Color hovered = pressed(color, label, 0.12);
    Color active = pressed(color, label, 0.22);
};

/// What the names in the template stand for.
class ThemeWords {
public:
    explicit ThemeWords(const DialogThemeColors& colors)
    {
        const auto below = opaque(colors.background2, colors);
        const auto primary = composed(colors.buttonPrimary, below);
        addFill("primary", {.color = primary, .label = readableOn(primary)});
        addFill("donate", {.color = composed(colors.buttonDonate, below), .label = colors.buttonDonateText});
        colors_.insert({{"background1", opaque(colors.background1, colors)},
                        {"background2", below},
                        {"background3", opaque(colors.background3, colors)},
                        {"card1", colors.card1},
                        {"card3", colors.card3},
                        {"popover", composed(colors.card2, below)},
                        {"slider", isLightTheme(colors) ? opaque(colors.background1, colors) : colors.text},
                        {"text", colors.text},
                        {"muted", colors.textMuted},
                        {"heading", colors.headingText},
                        {"link", colors.link}});
        lengths_ = {{"radius", colors.cornerRadius}, {"buttonRadius", colors.buttonCornerRadius}};
    }

    std::string text(std::string_view name, double share) const
    {
        if (const auto length = lengths_.find(name); length != lengths_.end())
            return cssText(length->second);
        return cssText(colors_.at(std::string(name)), share);
    }

private:
    void addFill(const std::string& name, const Fill& fill)
    {
        colors_.insert({{name, fill.color},
                        {name + "Hover", fill.hovered},
                        {name + "Active", fill.active},
                        {name + "Label", fill.label}});
    }

    std::map<std::string, Color, std::less<>> colors_;
    std::map<std::string, double, std::less<>> lengths_;
};

std::size_t wordLength(std::string_view text)
{
    const auto isPart = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    };
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isPart) - text.begin());
}

/// Badges of release notes, for a light and a dark page.
struct Badge {
    std::string_view name, lightFill, lightText, darkFill, darkText;
};

constexpr std::array<Badge, 3> badges{{
    {"feat", "#d6e8fb", "#0b4a85", "#1c3a5c", "#5ac8fa"},
    {"enh", "#d8f0df", "#14532d", "#1a3a2a", "#30d158"},
    {"fix", "#fbe6cf", "#7a3e00", "#3a2510", "#ff9f0a"},
}};

std::string colorScheme(const DialogThemeColors& colors)
{
    return fmt::format(":root{{color-scheme:{} !important}}\n", isLightTheme(colors) ? "light" : "dark");
}

} // namespace

std::string dialogStyleSheet(const DialogThemeColors& colors)
{
    const ThemeWords words(colors);
    std::string css;
    auto rest = dialogStyleTemplate;
    while (true) {
        const auto place = rest.find('$');
        css += rest.substr(0, place);
        if (place == std::string_view::npos)
            return css;
        rest.remove_prefix(place + 1);
        const auto name = rest.substr(0, wordLength(rest));
        rest.remove_prefix(name.size());
        unsigned percent = 100;
        if (rest.starts_with('/')) {
            const auto number = rest.substr(1, wordLength(rest.substr(1)));
            std::from_chars(number.data(), number.data() + number.size(), percent);
            rest.remove_prefix(1 + number.size());
        }
        css += words.text(name, percent / 100.0);
    }
}

bool isLightTheme(const DialogThemeColors& colors)
{
    return relativeLuminance(colors.text) < relativeLuminance(opaque(colors.background2, colors));
}

std::string releaseNotesReaderStyle(const DialogThemeColors& colors)
{
    auto css = colorScheme(colors) +
               "html{min-height:100% !important}\n" // one run of the ground's gradient, however short the notes
               "body{color:var(--text) !important}\n"
               ".whatsnew h2{color:var(--heading-text) !important}\n"
               ".whatsnew .intro,.whatsnew .item-desc,.whatsnew .closing"
               "{color:var(--text-muted) !important}\n"
               ".whatsnew .item{border-left-color:var(--link) !important}\n";
    const bool isLight = isLightTheme(colors);
    for (const auto& [name, lightFill, lightText, darkFill, darkText] : badges)
        css += fmt::format(".whatsnew .badge-{}{{background:{} !important;color:{} !important}}\n", name,
                           isLight ? lightFill : darkFill, isLight ? lightText : darkText);
    return css;
}

std::string notificationReaderStyle(const DialogThemeColors& colors)
{
    // The ground is the dialog's own: without graphics hardware, the engine draws a page that has none over the page
    // before it.
    return colorScheme(colors) +
           fmt::format("html{{color:{} !important;background:linear-gradient(135deg,{},{},{}) fixed !important}}\n",
                       cssText(colors.text), cssText(opaque(colors.background1, colors)),
                       cssText(opaque(colors.background2, colors)), cssText(opaque(colors.background3, colors)));
}

} // namespace corvane
