#include "commands/CommandLine.h"

#include "commands/Folders.h"

#include <array>
#include <limits>
#include <memory>

#include <fmt/format.h>
#include <glib.h>

namespace corvane::server {
namespace {

using Command = CommandLine::Command;
using Context = std::unique_ptr<GOptionContext, decltype(&g_option_context_free)>;

constexpr const char* serveSummary = "The reference server of Corvane: publishes a folder of documents, registers "
                                     "installations and delivers notifications on one port of this machine.";
constexpr const char* serveDescription = "Commands, each with its own --help:\n"
                                         "  corvane-server notify     Send a notification to installations\n"
                                         "  corvane-server profiles   List profiles and their installations\n";
constexpr const char* notifySummary = "Sends a notification to every registered installation, or to those bound to the "
                                      "profiles of one name. Works while the server runs.";
constexpr const char* profilesSummary = "Lists the profiles and the installations bound to them.";

/// Where the option parser leaves its values.
struct Raw {
    char* data = nullptr;
    char* publish = nullptr;
    char* origin = nullptr;
    char* title = nullptr;
    char* body = nullptr;
    char* bodyFile = nullptr;
    char* url = nullptr;
    char* profile = nullptr;
    int port = CommandLine::usualPort;
    gboolean help = FALSE;
    gboolean version = FALSE;

    Raw() = default;
    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;
    ~Raw()
    {
        for (char* text : {data, publish, origin, title, body, bodyFile, url, profile})
            g_free(text);
    }
};

// Texts are taken as bytes whatever the locale; who uses them checks that they are UTF-8.
GOptionEntry bytes(const char* name, char** target, const char* description, const char* argument)
{
    return {name, 0, 0, G_OPTION_ARG_FILENAME, target, description, argument};
}

Context contextFor(Command command, Raw& raw)
{
    Context context(g_option_context_new(nullptr), g_option_context_free);
    g_option_context_set_help_enabled(context.get(), FALSE);
    const std::array common{
        bytes("data", &raw.data, "Folder of the database (default: below $XDG_STATE_HOME)", "FOLDER"),
        GOptionEntry{"help", 'h', 0, G_OPTION_ARG_NONE, &raw.help, "Show this help", nullptr},
        GOptionEntry{"version", 0, 0, G_OPTION_ARG_NONE, &raw.version, "Show the version", nullptr}, GOptionEntry{}};
    const std::array serve{GOptionEntry{"port", 0, 0, G_OPTION_ARG_INT, &raw.port,
                                        "Port on 127.0.0.1, 0 for a free one (default: 3002)", "PORT"},
                           bytes("publish-folder", &raw.publish, "Folder of the published documents", "FOLDER"),
                           bytes("public-origin", &raw.origin, "Address under which a proxy shows this server", "URL"),
                           GOptionEntry{}};
    const std::array notify{
        bytes("title", &raw.title, "Title of the notification", "TEXT"),
        bytes("body", &raw.body, "Its body, plain text or an HTML fragment", "TEXT"),
        bytes("body-file", &raw.bodyFile, "Take the body from a file", "FILE"),
        bytes("url", &raw.url, "A link to go with it", "URL"),
        bytes("profile", &raw.profile, "Only to installations bound to profiles of this name", "NAME"),
        GOptionEntry{}};
    if (command == Command::serve)
        g_option_context_add_main_entries(context.get(), serve.data(), nullptr);
    if (command == Command::notify)
        g_option_context_add_main_entries(context.get(), notify.data(), nullptr);
    g_option_context_add_main_entries(context.get(), common.data(), nullptr);
    const bool serves = command == Command::serve;
    g_option_context_set_summary(context.get(), serves                       ? serveSummary
                                                : command == Command::notify ? notifySummary
                                                                             : profilesSummary);
    g_option_context_set_description(context.get(), serves ? serveDescription : nullptr);
    return context;
}

const char* nameOf(Command command)
{
    return command == Command::notify     ? "corvane-server notify"
           : command == Command::profiles ? "corvane-server profiles"
                                          : "corvane-server";
}

std::optional<Error> readOptions(GOptionContext* context, const std::vector<std::string>& arguments)
{
    auto** list = static_cast<char**>(g_malloc0((arguments.size() + 2) * sizeof(char*)));
    list[0] = g_strdup(g_get_prgname());
    for (std::size_t i = 0; i < arguments.size(); ++i)
        list[i + 1] = g_strdup(arguments[i].c_str());

    GError* error = nullptr;
    std::optional<Error> failure;
    if (g_option_context_parse_strv(context, &list, &error) == FALSE) {
        failure = Error{error->message};
        g_error_free(error);
    } else if (g_strv_length(list) > 1) {
        failure = Error{fmt::format("there is no command or argument \"{}\"", list[1])};
    }
    g_strfreev(list);
    return failure;
}

std::optional<std::filesystem::path> pathOf(const char* text)
{
    return text == nullptr ? std::nullopt : std::optional(std::filesystem::path(text));
}

std::string textOf(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

Result<CommandLine> checked(Command command, const Raw& raw)
{
    const auto refuse = [](std::string reason) { return std::unexpected(Error{std::move(reason)}); };
    CommandLine line;
    line.command = command;
    line.dataFolder = pathOf(raw.data).value_or(defaultDataFolder());
    if (line.dataFolder.empty())
        return refuse("--data names no folder");
    if (raw.port < 0 || raw.port > std::numeric_limits<std::uint16_t>::max())
        return refuse(fmt::format("--port must be between 0 and 65535, not {}", raw.port));
    line.port = static_cast<std::uint16_t>(raw.port);
    line.publishFolder = pathOf(raw.publish);
    if (raw.origin != nullptr) {
        line.publicOrigin = Url::parse(raw.origin);
        if (!line.publicOrigin || !line.publicOrigin->isHttp() || line.publicOrigin->path().size() > 1)
            return refuse("--public-origin must be an http or https address without a path");
    }
    if (command == Command::notify && raw.title == nullptr)
        return refuse("--title is missing");
    if (raw.body != nullptr && raw.bodyFile != nullptr)
        return refuse("--body and --body-file exclude each other");
    line.title = textOf(raw.title);
    line.body = textOf(raw.body);
    line.bodyFile = pathOf(raw.bodyFile);
    line.url = textOf(raw.url);
    if (raw.profile != nullptr)
        line.profile = raw.profile;
    return line;
}

} // namespace

Result<CommandLine> CommandLine::parse(std::vector<std::string> arguments)
{
    auto command = Command::serve;
    if (!arguments.empty() && (arguments.front() == "notify" || arguments.front() == "profiles")) {
        command = arguments.front() == "notify" ? Command::notify : Command::profiles;
        arguments.erase(arguments.begin());
    }
    g_set_prgname(nameOf(command)); // what the help calls the program
    Raw raw;
    const auto context = contextFor(command, raw);
    if (auto failure = readOptions(context.get(), arguments))
        return std::unexpected(*std::move(failure));
    if (raw.help != FALSE) {
        const std::unique_ptr<char, decltype(&g_free)> help(g_option_context_get_help(context.get(), TRUE, nullptr),
                                                            g_free);
        return CommandLine{.command = Command::showHelp, .help = help.get()};
    }
    if (raw.version != FALSE)
        return CommandLine{.command = Command::showVersion};
    return checked(command, raw);
}

} // namespace corvane::server
