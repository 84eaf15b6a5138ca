#pragma once

#include "settings/Color.h"

namespace corvane {

/// What is seen of a colour that lies on an opaque one: opaque too.
Color composed(const Color& above, const Color& below);

/// The relative luminance of WCAG 2.1, from 0 for black to 1 for white. The opacity does not count.
double relativeLuminance(const Color& color);

/// The contrast ratio of WCAG 2.1 between a text and the opaque colour below it, from 1 to 21.
double contrastRatio(const Color& text, const Color& below);

/// Black or white, whichever is easier to read on an opaque colour.
Color readableOn(const Color& below);

} // namespace corvane
