#include "commands/ServeCommand.h"

#include "ReferenceServer.h"
#include "commands/Folders.h"

#include <cstdio>
#include <memory>
#include <system_error>

#include <fmt/format.h>
#include <glib-unix.h>
#include <glib.h>

namespace corvane::server {
namespace {

gboolean quit(void* loop)
{
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_CONTINUE;
}

} // namespace

Result<void> serve(const CommandLine& line, const std::filesystem::path& publishFolder)
{
    std::error_code failed;
    if (!std::filesystem::is_directory(publishFolder, failed))
        return std::unexpected(Error{fmt::format("there is no publish folder {}", publishFolder.string())});
    auto database = openDatabase(line.dataFolder, Database::Opening::createWhenMissing);
    if (!database)
        return std::unexpected(database.error());

    ReferenceServer server(*std::move(database), publishFolder, systemNow);
    const auto address = server.listen(line.port, line.publicOrigin);
    if (!address)
        return std::unexpected(address.error());

    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop(g_main_loop_new(nullptr, FALSE),
                                                                        g_main_loop_unref);
    const guint onTerminate = g_unix_signal_add(SIGTERM, quit, loop.get());
    const guint onInterrupt = g_unix_signal_add(SIGINT, quit, loop.get());
    fmt::print("corvane-server listens on {} (data in {}, publishes {})\n", address->text(), line.dataFolder.string(),
               publishFolder.string());
    std::fflush(stdout);
    g_main_loop_run(loop.get());
    g_source_remove(onTerminate);
    g_source_remove(onInterrupt);
    return {};
}

} // namespace corvane::server
