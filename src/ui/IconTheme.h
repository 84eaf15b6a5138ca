#pragma once

#include <filesystem>
#include <vector>

namespace corvane {

/// Lets the default display find the application's own icons in "icons" below each of `resourceFolders`, and gives
/// every window the application's icon. Called once, before the first window.
void addIcons(const std::vector<std::filesystem::path>& resourceFolders);

} // namespace corvane
