// The readers, the stores and the client of the program behind one command line: see `help`.

#include "Answer.h"
#include "Commands.h"
#include "FileReading.h"
#include "LineReading.h"

#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace corvane;

constexpr std::string_view help = R"(Usage: corvane-probe COMMAND [ARGUMENT...]

What Corvane makes of files, texts and addresses, by the code that the program itself runs. Every answer is one line
of JSON on the standard output. No files but those named here are touched.

Files, an object with "file" for each; "readable" false means that the shown values stand in for the file's:
  catalogue FILE...       the services; of an unreadable file those that ship with the program
  pending FILE...         the notification server's answer; null when the list would stay as it is
  settings FILE...        the settings; of an unreadable file the defaults
  theme FILE...           the dialogs' colours ([red, green, blue, opacity], 0 to 1) and the pages' style
  version-file FILE...    the published version; null when there is none
  archive FILE...         the earlier release notes, as found beside the published catalogue
  redirect FILE...        the address that a document names in place of a catalogue, or null

Texts, one JSON value a line on the standard input; {"error": why} answers a line that is something else:
  colour                  "text"          [red, green, blue, opacity], 0 to 1, or null
  newer                   ["a", "b"]      whether version a is newer than version b
  address                 "text"          {"scheme", "host", "text"}, or null
  body                    {"body", "url"} {"looksLikeHTML", "content", "footer"} of a notification
  message                 any             {"action", "token"} of a page's message, or null
  preview                 "text"          the line that a list shows of a notification's body

Requests; 0 when it was done, else 1 and {"error": why}:
  fetch KIND URL          one answer within the limits of its kind, "json" or "page"
  download URL FOLDER [SHA256]
                          the installer image at an address, into a folder
  serve-page FILE         shows a page to this machine; prints its address; ends with the standard input
  save PATH               the standard input becomes the file
  apply HOME              the standard input becomes the catalogue of the user of that home
  sweep HOME              clears away what killed programs left in that home
  defaults-set KEY VALUE  keeps a text in the defaults of the user whose HOME it is; "-" is the standard input
  defaults-get KEY        the text kept there, or null

--help shows this. 2 is the status for a command line of another form.
)";

int run(std::string_view name, std::span<const std::string> arguments)
{
    if (const auto* kind = probe::fileKindNamed(name)) {
        if (arguments.empty())
            return probe::refuse(fmt::format("{} needs a file", name));
        for (const auto& file : arguments) {
            auto answer = kind->read(file);
            answer["file"] = file;
            probe::print(answer);
        }
        return EXIT_SUCCESS;
    }
    if (const auto* kind = probe::lineKindNamed(name)) {
        if (!arguments.empty())
            return probe::refuse(fmt::format("{} takes no arguments", name));
        probe::answerLines(*kind);
        return EXIT_SUCCESS;
    }
    const auto* command = probe::commandNamed(name);
    if (command == nullptr)
        return probe::refuse(fmt::format("there is no command \"{}\"", name));
    if (arguments.size() < command->fewest || arguments.size() > command->most)
        return probe::refuse(fmt::format("{} was given {} arguments", name, arguments.size()));
    return command->run(arguments);
}

} // namespace

int main(int count, char** values)
{
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(values + 1, values + count);
    if (arguments.empty())
        return probe::refuse("a command is missing");
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        fmt::print("{}", help);
        return EXIT_SUCCESS;
    }
    return run(arguments[0], std::span(arguments).subspan(1));
}
