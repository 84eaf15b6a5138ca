#pragma once

namespace corvane {

/// Adds the application's own style sheet to the default display. Called once, before the first window.
void addStyleSheet();

} // namespace corvane
