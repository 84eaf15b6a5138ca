#include "commands/CommandForm.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace corvane::server {
namespace {

using Command = CommandLine::Command;

constexpr std::array forms{
    CommandForm{Command::serve, "", nullptr,
                "The reference server of Corvane: publishes a folder of documents, registers installations, "
                "delivers notifications and collects usage events on one port of this machine."},
    CommandForm{
        Command::notify, "notify", nullptr,
        "Sends a notification to every registered installation, or to those bound to the profiles of one name."},
    CommandForm{Command::profiles, "profiles", nullptr, "Lists the profiles and the installations bound to them."},
    CommandForm{Command::events, "events", nullptr, "Lists the usage events that were collected, the oldest first."},
    CommandForm{Command::publishFolder, "publish-folder", "FOLDER",
                "Makes a copy of the sample documents that may be changed."},
    CommandForm{Command::release, "release", "VERSION",
                "Publishes a new version of the application; the release notes before go to the archive."},
    CommandForm{Command::catalogue, "catalogue", "FILE",
                "Publishes a new catalogue of services; with new notes, those before go to the archive."},
    CommandForm{Command::storeVersion, "store-version", "VERSION|none",
                "Sets the version that the store look-up answers with."},
};

} // namespace

const CommandForm* CommandForm::named(std::string_view name)
{
    const auto* found =
        std::find_if(forms.begin() + 1, forms.end(), [&](const auto& form) { return form.name == name; });
    return found == forms.end() ? nullptr : found;
}

const CommandForm& CommandForm::serving()
{
    return forms.front();
}

std::string CommandForm::list()
{
    std::string lines = "Commands, each with its own --help; they work while the server runs:\n";
    for (const auto& form : forms) {
        if (form.command != Command::serve)
            lines += fmt::format("  {:15} {}\n", form.name, form.summary);
    }
    return lines;
}

} // namespace corvane::server
