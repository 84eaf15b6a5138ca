#include "settings/Contrast.h"

#include <algorithm>
#include <cmath>

namespace corvane {
namespace {

double linear(double component)
{
    const auto c = std::clamp(component, 0.0, 1.0);
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

} // namespace

Color composed(const Color& above, const Color& below)
{
    const auto opacity = std::clamp(above.opacity, 0.0, 1.0);
    const auto mixed = [opacity](double a, double b) { return a * opacity + b * (1 - opacity); };
    return {mixed(above.red, below.red), mixed(above.green, below.green), mixed(above.blue, below.blue), 1};
}

double relativeLuminance(const Color& color)
{
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrastRatio(const Color& text, const Color& below)
{
    const auto [dark, light] = std::minmax({relativeLuminance(composed(text, below)), relativeLuminance(below)});
    return (light + 0.05) / (dark + 0.05);
}

Color readableOn(const Color& below)
{
    return contrastRatio(Color::white(), below) >= contrastRatio(Color::black(), below) ? Color::white()
                                                                                        : Color::black();
}

} // namespace corvane
