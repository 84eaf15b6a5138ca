#include "commands/CommandOptions.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include <fmt/format.h>

namespace corvane::server {
namespace {

using Command = CommandLine::Command;

struct Option {
    std::vector<Command> commands; // that take it; none for all of them
    GOptionEntry entry;
};

GOptionEntry bytes(const char* name, char** target, const char* description, const char* argument)
{
    return {name, 0, 0, G_OPTION_ARG_FILENAME, static_cast<void*>(target), description, argument};
}

/// Runs the parser over a list of its own, from which it takes the options.
Result<std::vector<std::string>> parsed(GOptionContext* context, const std::vector<std::string>& arguments)
{
    auto** list = static_cast<char**>(g_malloc0((arguments.size() + 2) * sizeof(char*)));
    list[0] = g_strdup(g_get_prgname());
    for (std::size_t i = 0; i < arguments.size(); ++i)
        list[i + 1] = g_strdup(arguments[i].c_str());

    GError* error = nullptr;
    Result<std::vector<std::string>> rest;
    if (g_option_context_parse_strv(context, &list, &error) == FALSE) {
        rest = std::unexpected(Error{error->message});
        g_error_free(error);
    } else {
        for (char** left = list + 1; *left != nullptr; ++left) {
            if (std::string_view(*left) != "--")
                rest->emplace_back(*left);
        }
    }
    g_strfreev(list);
    return rest;
}

} // namespace

CommandOptions::~CommandOptions()
{
    for (char* text : {data, publish, origin, title, body, bodyFile, url, profile, notes, image, imageSize})
        g_free(text);
}

std::vector<GOptionEntry> CommandOptions::entriesOf(Command command)
{
    using enum Command;
    const std::vector<Option> options{
        {{serve},
         {"port", 0, 0, G_OPTION_ARG_INT, &port, "Port on 127.0.0.1, 0 for a free one (default: 3002)", "PORT"}},
        {{serve, release, catalogue, storeVersion},
         bytes("publish-folder", &publish, "Folder of the published documents", "FOLDER")},
        {{serve}, bytes("public-origin", &origin, "Address under which a proxy shows this server", "URL")},
        {{notify}, bytes("title", &title, "Title of the notification", "TEXT")},
        {{notify}, bytes("body", &body, "Its body, plain text or an HTML fragment", "TEXT")},
        {{notify}, bytes("body-file", &bodyFile, "Take the body from a file", "FILE")},
        {{notify}, bytes("url", &url, "A link to go with it", "URL")},
        {{notify}, bytes("profile", &profile, "Only to installations bound to profiles of this name", "NAME")},
        {{release, catalogue}, bytes("notes", &notes, "The new release notes, a page of HTML", "FILE")},
        {{release}, bytes("image", &image, "The installer image", "FILE")},
        {{release}, bytes("image-size", &imageSize, "Generate an installer image of this length", "BYTES")},
        {{events},
         {"json", 0, 0, G_OPTION_ARG_NONE, &wantsJson, "Everything about each event, as a JSON object a line",
          nullptr}},
        {{serve, notify, profiles, events},
         bytes("data", &data, "Folder of the database (default: below $XDG_STATE_HOME)", "FOLDER")},
        {{}, {"help", 'h', 0, G_OPTION_ARG_NONE, &isHelpWanted, "Show this help", nullptr}},
        {{}, {"version", 0, 0, G_OPTION_ARG_NONE, &isVersionWanted, "Show the version", nullptr}},
    };
    std::vector<GOptionEntry> entries;
    for (const auto& option : options) {
        if (option.commands.empty() || std::ranges::find(option.commands, command) != option.commands.end())
            entries.push_back(option.entry);
    }
    entries.emplace_back();
    return entries;
}

Result<std::vector<std::string>> CommandOptions::read(const CommandForm& form,
                                                      const std::vector<std::string>& arguments)
{
    // What the help calls the program.
    const std::string_view name(form.name);
    g_set_prgname(name.empty() ? "corvane-server" : fmt::format("corvane-server {}", name).c_str());

    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context(g_option_context_new(form.argument),
                                                                                    g_option_context_free);
    const auto entries = entriesOf(form.command);
    g_option_context_set_help_enabled(context.get(), FALSE);
    g_option_context_add_main_entries(context.get(), entries.data(), nullptr);
    g_option_context_set_summary(context.get(), form.summary);
    if (form.command == Command::serve)
        g_option_context_set_description(context.get(), CommandForm::list().c_str());

    auto rest = parsed(context.get(), arguments);
    if (isHelpWanted != FALSE) {
        const std::unique_ptr<char, decltype(&g_free)> text(g_option_context_get_help(context.get(), TRUE, nullptr),
                                                            g_free);
        help = text.get();
    }
    return rest;
}

} // namespace corvane::server
