#pragma once

#include "base/Error.h"
#include "data/Database.h"

#include <filesystem>

namespace corvane::server {

/// "Hollisward/corvane-server" below the user's folder for state ($XDG_STATE_HOME, else ~/.local/state).
std::filesystem::path defaultDataFolder();

/// The documents installed beside the running executable (share/corvane-server/publish below its prefix), or
/// `sourceFolder` when there are none, as in a build.
std::filesystem::path defaultPublishFolder(const std::filesystem::path& sourceFolder);

/// The server's database in the data folder.
Result<Database> openDatabase(const std::filesystem::path& dataFolder, Database::Opening opening);

} // namespace corvane::server
