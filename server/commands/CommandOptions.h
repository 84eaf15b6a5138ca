#pragma once

#include "base/Error.h"
#include "commands/CommandForm.h"

#include <string>
#include <vector>

#include <glib.h>

namespace corvane::server {

/// The values of the options as they were written, null where an option was not given. Texts are bytes whatever the
/// locale; who uses them checks that they are UTF-8.
struct CommandOptions {
    char* data = nullptr;
    char* publish = nullptr;
    char* origin = nullptr;
    char* title = nullptr;
    char* body = nullptr;
    char* bodyFile = nullptr;
    char* url = nullptr;
    char* profile = nullptr;
    char* notes = nullptr;
    char* image = nullptr;
    char* imageSize = nullptr;
    int port = CommandLine::usualPort;
    gboolean wantsJson = FALSE;
    gboolean isHelpWanted = FALSE;
    gboolean isVersionWanted = FALSE;
    std::string help; // filled by `read`

    CommandOptions() = default;
    CommandOptions(const CommandOptions&) = delete;
    CommandOptions& operator=(const CommandOptions&) = delete;
    ~CommandOptions();

    /// Reads the options that a command takes. What remains of the arguments, or what is wrong with them.
    Result<std::vector<std::string>> read(const CommandForm& form, const std::vector<std::string>& arguments);

private:
    std::vector<GOptionEntry> entriesOf(CommandLine::Command command);
};

} // namespace corvane::server
