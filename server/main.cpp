#include "commands/CatalogueCommand.h"
#include "commands/CommandLine.h"
#include "commands/EventsCommand.h"
#include "commands/Folders.h"
#include "commands/NotifyCommand.h"
#include "commands/ProfilesCommand.h"
#include "commands/PublishFolderCommand.h"
#include "commands/ReleaseCommand.h"
#include "commands/ServeCommand.h"
#include "commands/StoreVersionCommand.h"
#include "data/DatabaseError.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>

namespace {

using namespace corvane;
using namespace corvane::server;

constexpr int wrongUse = 2;

Result<void> runOnDatabase(const CommandLine& line)
{
    auto database = openDatabase(line.dataFolder, Database::Opening::existingOnly);
    if (!database)
        return std::unexpected(database.error());
    try {
        if (line.command == CommandLine::Command::profiles) {
            fmt::print("{}", listProfiles(*database));
            return {};
        }
        if (line.command == CommandLine::Command::events) {
            fmt::print("{}", listEvents(*database, line.wantsJson ? EventForm::json : EventForm::line));
            return {};
        }
        const auto done = notify(line, *database, systemNow);
        if (!done)
            return std::unexpected(done.error());
        fmt::print("{}\n", *done);
        return {};
    } catch (const DatabaseError& error) {
        return std::unexpected(Error{fmt::format("the database failed: {}", error.what())});
    }
}

/// Runs one of the commands that change a folder of documents.
Result<std::string> runOnDocuments(const CommandLine& line)
{
    switch (line.command) {
    case CommandLine::Command::release:
        return release(line, systemNow);
    case CommandLine::Command::catalogue:
        return publishCatalogue(line, systemNow);
    case CommandLine::Command::storeVersion:
        return setStoreVersion(line);
    default:
        return copyPublishFolder(defaultPublishFolder(CORVANE_SERVER_SOURCE_PUBLISH), line.argument);
    }
}

Result<void> run(const CommandLine& line)
{
    switch (line.command) {
    case CommandLine::Command::showHelp:
        fmt::print("{}", line.help);
        return {};
    case CommandLine::Command::showVersion:
        fmt::print("corvane-server {}\n", CORVANE_SERVER_VERSION);
        return {};
    case CommandLine::Command::serve:
        return serve(line, line.publishFolder.value_or(defaultPublishFolder(CORVANE_SERVER_SOURCE_PUBLISH)));
    case CommandLine::Command::notify:
    case CommandLine::Command::profiles:
    case CommandLine::Command::events:
        return runOnDatabase(line);
    default:
        break;
    }
    const auto done = runOnDocuments(line);
    if (!done)
        return std::unexpected(done.error());
    fmt::print("{}", *done);
    return {};
}

} // namespace

int main(int argumentCount, char** arguments)
{
    std::signal(SIGPIPE, SIG_IGN);
    umask(077); // the database is nobody else's to read
    const auto line = CommandLine::parse(std::vector<std::string>(arguments + 1, arguments + argumentCount));
    if (!line) {
        fmt::print(stderr, "corvane-server: {}. Try \"corvane-server --help\".\n", line.error().message);
        return wrongUse;
    }
    const auto done = run(*line);
    if (!done) {
        fmt::print(stderr, "corvane-server: {}\n", done.error().message);
        return 1;
    }
    return 0;
}
