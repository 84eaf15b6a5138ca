#include "commands/CommandLine.h"

#include "base/Text.h"
#include "commands/CommandForm.h"
#include "commands/CommandOptions.h"
#include "commands/Folders.h"
#include "publishing/GeneratedImage.h"

#include <limits>

#include <fmt/format.h>

namespace corvane::server {
namespace {

using Command = CommandLine::Command;

std::unexpected<Error> refuse(std::string reason)
{
    return std::unexpected(Error{std::move(reason)});
}

std::optional<std::filesystem::path> pathOf(const char* text)
{
    return text == nullptr ? std::nullopt : std::optional(std::filesystem::path(text));
}

std::string textOf(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

Result<void> readServing(const CommandOptions& options, CommandLine& line)
{
    line.dataFolder = pathOf(options.data).value_or(defaultDataFolder());
    if (line.dataFolder.empty())
        return refuse("--data names no folder");
    if (options.port < 0 || options.port > std::numeric_limits<std::uint16_t>::max())
        return refuse(fmt::format("--port must be between 0 and 65535, not {}", options.port));
    line.port = static_cast<std::uint16_t>(options.port);
    if (options.origin != nullptr) {
        line.publicOrigin = Url::parse(options.origin);
        if (!line.publicOrigin || !line.publicOrigin->isHttp() || line.publicOrigin->path().size() > 1)
            return refuse("--public-origin must be an http or https address without a path");
    }
    return {};
}

Result<void> readMessage(const CommandOptions& options, CommandLine& line)
{
    if (line.command == Command::notify && options.title == nullptr)
        return refuse("--title is missing");
    if (options.body != nullptr && options.bodyFile != nullptr)
        return refuse("--body and --body-file exclude each other");
    line.title = textOf(options.title);
    line.body = textOf(options.body);
    line.bodyFile = pathOf(options.bodyFile);
    line.url = textOf(options.url);
    if (options.profile != nullptr)
        line.profile = options.profile;
    line.wantsJson = options.wantsJson != FALSE;
    return {};
}

Result<void> readPublishing(const CommandOptions& options, CommandLine& line)
{
    line.publishFolder = pathOf(options.publish);
    line.notesFile = pathOf(options.notes);
    line.imageFile = pathOf(options.image);
    const bool isRelease = line.command == Command::release;
    const bool changesFolder = isRelease || line.command == Command::catalogue || line.command == Command::storeVersion;
    if (changesFolder && (!line.publishFolder || line.publishFolder->empty()))
        return refuse("--publish-folder is missing");
    if (isRelease && !line.notesFile)
        return refuse("--notes is missing");
    if (options.imageSize == nullptr)
        return {};
    if (line.imageFile)
        return refuse("--image and --image-size exclude each other");
    const auto size = strictInteger(options.imageSize);
    if (!size || *size < 1 || static_cast<std::uint64_t>(*size) > GeneratedImage::largest)
        return refuse(fmt::format("--image-size must be a number of bytes from 1 to {}", GeneratedImage::largest));
    line.imageSize = static_cast<std::uint64_t>(*size);
    return {};
}

Result<CommandLine> checked(const CommandForm& form, const CommandOptions& options, std::vector<std::string> arguments)
{
    CommandLine line;
    line.command = form.command;
    const std::size_t wanted = form.argument == nullptr ? 0 : 1;
    if (arguments.size() > wanted)
        return refuse(fmt::format("there is no command or argument \"{}\"", arguments[wanted]));
    if (arguments.size() < wanted || (wanted == 1 && arguments.front().empty()))
        return refuse(fmt::format("{} is missing", form.argument));
    if (wanted == 1)
        line.argument = std::move(arguments.front());
    for (const auto read : {readServing, readMessage, readPublishing}) {
        if (auto done = read(options, line); !done)
            return std::unexpected(done.error());
    }
    return line;
}

} // namespace

Result<CommandLine> CommandLine::parse(std::vector<std::string> arguments)
{
    const auto* form = arguments.empty() ? nullptr : CommandForm::named(arguments.front());
    if (form != nullptr)
        arguments.erase(arguments.begin());
    else
        form = &CommandForm::serving();

    CommandOptions options;
    auto rest = options.read(*form, arguments);
    if (!rest)
        return std::unexpected(rest.error());
    if (options.isHelpWanted != FALSE)
        return CommandLine{.command = Command::showHelp, .help = options.help};
    if (options.isVersionWanted != FALSE)
        return CommandLine{.command = Command::showVersion};
    return checked(*form, options, *std::move(rest));
}

} // namespace corvane::server
