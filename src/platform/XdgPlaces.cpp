#include "platform/XdgPlaces.h"

#include <glib.h>

namespace corvane {

Places xdgPlaces()
{
    const auto ours = std::filesystem::path("Hollisward") / "Corvane";
    const char* downloads = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
    return {
        .data = g_get_user_data_dir() / ours,
        .cache = g_get_user_cache_dir() / ours,
        .defaults = g_get_user_config_dir() / ours / "defaults.json",
        .downloads = downloads == nullptr ? std::nullopt : std::optional<std::filesystem::path>(downloads),
    };
}

} // namespace corvane
