#include "commands/NotifyCommand.h"

#include "data/Transaction.h"
#include "store/NotificationStore.h"
#include "store/ProfileStore.h"

#include <fstream>
#include <iterator>

#include <fmt/format.h>

namespace corvane::server {
namespace {

Result<std::string> bodyOf(const CommandLine& line)
{
    if (!line.bodyFile)
        return line.body;
    std::ifstream file(*line.bodyFile, std::ios::binary);
    // One byte more than a message may have is enough to see that there is too much.
    std::string body(Message::longestBody + 1, '\0');
    file.read(body.data(), static_cast<std::streamsize>(body.size()));
    body.resize(static_cast<std::size_t>(file.gcount()));
    if (!file.eof() && !file)
        return std::unexpected(Error{fmt::format("cannot read {}", line.bodyFile->string())});
    return body;
}

std::string report(std::int64_t deliveries, const std::string& whom)
{
    return fmt::format("Sent to {} {} {}.", deliveries, deliveries == 1 ? "install" : "installs", whom);
}

} // namespace

Result<std::string> notify(const CommandLine& line, Database& database, const Now& now)
{
    const auto body = bodyOf(line);
    if (!body)
        return std::unexpected(body.error());
    const auto message = Message::checked(line.title, *body, line.url);
    if (!message)
        return std::unexpected(message.error());

    NotificationStore notifications(database);
    Transaction transaction(database);
    std::string done;
    if (line.profile) {
        const auto profiles = ProfileStore(database).findByName(*line.profile);
        if (profiles.empty())
            return std::unexpected(Error{fmt::format("there is no profile \"{}\"", *line.profile)});
        done = report(notifications.sendTo(profiles, *message, now()), fmt::format("bound to \"{}\"", *line.profile));
    } else {
        done = report(notifications.sendToAll(*message, now()), "in all");
    }
    transaction.commit();
    return done;
}

} // namespace corvane::server
