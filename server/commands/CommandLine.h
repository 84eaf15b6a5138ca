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
    enum class Command { serve, notify, profiles, showHelp, showVersion };

    static constexpr std::uint16_t usualPort = 3002;

    Command command = Command::serve;
    std::filesystem::path dataFolder;

    // serve
    std::uint16_t port = usualPort;
    std::optional<std::filesystem::path> publishFolder;
    std::optional<Url> publicOrigin;

    // notify
    std::string title;
    std::string body;
    std::optional<std::filesystem::path> bodyFile;
    std::string url;
    std::optional<std::string> profile;

    // showHelp
    std::string help;

    /// Reads the arguments after the program's name. The failure is a sentence without the program's name.
    static Result<CommandLine> parse(std::vector<std::string> arguments);
};

} // namespace corvane::server
