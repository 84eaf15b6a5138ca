#pragma once

#include "commands/CommandLine.h"

#include <string_view>

namespace corvane::server {

/// How one command is written: its name and what follows it.
struct CommandForm {
    CommandLine::Command command;
    const char* name;     // empty for serving, which is what the program does without a command
    const char* argument; // what its one argument stands for; null when it takes none
    const char* summary;

    /// Null when there is no command of that name.
    static const CommandForm* named(std::string_view name);

    static const CommandForm& serving();

    /// The named commands, one a line, for the help.
    static std::string list();
};

} // namespace corvane::server
