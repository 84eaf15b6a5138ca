#include "publishing/NotesText.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace corvane::server {

std::string replacedAll(std::string text, std::string_view from, std::string_view to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string dayText(std::chrono::sys_seconds time)
{
    const auto day = fmt::gmtime(time.time_since_epoch().count());
    return fmt::format("{:%b} {}, {:%Y}", day, day.tm_mday, day);
}

} // namespace corvane::server
