#include "commands/Folders.h"

#include <system_error>

#include <fmt/format.h>
#include <glib.h>
#include <unistd.h>

namespace corvane::server {

namespace fs = std::filesystem;

fs::path defaultDataFolder()
{
    return fs::path(g_get_user_state_dir()) / "Hollisward" / "corvane-server";
}

fs::path defaultPublishFolder(const fs::path& sourceFolder)
{
    std::error_code failed;
    const auto executable = fs::read_symlink("/proc/self/exe", failed);
    const auto installed = executable.parent_path().parent_path() / "share" / "corvane-server" / "publish";
    return fs::is_directory(installed, failed) ? installed : sourceFolder;
}

Result<Database> openDatabase(const fs::path& dataFolder, Database::Opening opening)
{
    const auto file = dataFolder / "server.db";
    std::error_code failed;
    if (opening == Database::Opening::existingOnly && !fs::exists(file, failed))
        return std::unexpected(Error{fmt::format(
            "there is no database in {}: start the server once, or name its folder with --data", dataFolder.string())});
    fs::create_directories(dataFolder, failed);
    if (failed)
        return std::unexpected(
            Error{fmt::format("cannot create the data folder {}: {}", dataFolder.string(), failed.message())});
    if (access(dataFolder.c_str(), W_OK) != 0)
        return std::unexpected(Error{fmt::format("the data folder {} is not writable", dataFolder.string())});
    return Database::open(file, opening);
}

} // namespace corvane::server
