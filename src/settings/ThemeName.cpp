#include "settings/ThemeName.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace corvane {

std::string normalizedThemeName(std::string_view name)
{
    static constexpr std::array<std::string_view, 3> corvaneAliases{"corvane_colors", "corvane_theme", "corva"};

    auto normalized = lowercased(trimmedBlanks(name));
    std::ranges::replace_if(normalized, [](char c) { return c == ' ' || c == '-'; }, '_');
    return std::ranges::count(corvaneAliases, normalized) > 0 ? "corvane" : normalized;
}

} // namespace corvane
