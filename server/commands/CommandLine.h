#pragma once

#include "base/Error.h"
#include "base/Url.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvane::server {

/// What the program was asked to do.
struct CommandLine {
    enum class Command {
        serve,
        notify,
        profiles,
        events,
        release,
        catalogue,
        storeVersion,
        publishFolder,
        showHelp,
        showVersion
    };

    static constexpr std::uint16_t usualPort = 3002;

    Command command = Command::serve;
    std::filesystem::path dataFolder;

    /// The folder of the published documents; always there for the commands that change it.
    std::optional<std::filesystem::path> publishFolder;

    /// release: the version; catalogue: the file; storeVersion: the version or "none"; publishFolder: the new folder.
    std::string argument;

    // serve
    std::uint16_t port = usualPort;
    std::optional<Url> publicOrigin;

    // notify
    std::string title;
    std::string body;
    std::optional<std::filesystem::path> bodyFile;
    std::string url;
    std::optional<std::string> profile;

    // events
    bool wantsJson = false;

    // release; notesFile also for catalogue
    std::optional<std::filesystem::path> notesFile;
    std::optional<std::filesystem::path> imageFile;
    std::optional<std::uint64_t> imageSize; // bytes of an image to be generated

    // showHelp
    std::string help;

    /// Reads the arguments after the program's name. The failure is a sentence without the program's name.
    static Result<CommandLine> parse(std::vector<std::string> arguments);
};

} // namespace corvane::server
