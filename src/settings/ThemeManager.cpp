#include "settings/ThemeManager.h"

#include "settings/ThemeName.h"
#include "settings/ThemeStyle.h"

namespace corvane {

std::optional<ThemeJSON> ThemeManager::readTheme(std::string_view name) const
{
    return resources_.read(normalizedThemeName(name), "json").and_then(decodeTheme).or_else([this] {
        return resources_.read("default", "json").and_then(decodeTheme);
    });
}

DialogThemeColors ThemeManager::dialogColors(std::string_view forTheme) const
{
    const auto theme = readTheme(forTheme);
    return theme ? resolvedDialogColors(*theme) : defaultDialogColors();
}

std::string ThemeManager::themeCSS(std::string_view forTheme) const
{
    return themeStyleBlock(readTheme(forTheme).value_or(ThemeJSON{}));
}

} // namespace corvane
