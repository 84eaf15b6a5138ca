#include "publishing/Freshness.h"

#include "base/Text.h"

#include <memory>
#include <ranges>

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <libsoup/soup.h>

namespace corvane::server {
namespace {

std::chrono::sys_seconds wholeSeconds(OpenFile::TimePoint time)
{
    return std::chrono::floor<std::chrono::seconds>(time);
}

bool namesTag(std::string_view list, std::string_view tag)
{
    for (const auto part : std::views::split(list, ',')) {
        auto item = trimmedBlanks(std::string_view(part));
        if (item.starts_with("W/"))
            item.remove_prefix(2);
        if (item == "*" || item == tag)
            return true;
    }
    return false;
}

} // namespace

std::string entityTag(const OpenFile& file)
{
    return fmt::format("\"{:x}-{:x}\"", file.changedAt().time_since_epoch().count(), file.size());
}

std::string httpDate(OpenFile::TimePoint time)
{
    return fmt::format("{:%a, %d %b %Y %H:%M:%S} GMT", fmt::gmtime(wholeSeconds(time).time_since_epoch().count()));
}

bool isFresh(const HttpRequest& request, const OpenFile& file)
{
    if (!request.ifNoneMatch.empty())
        return namesTag(request.ifNoneMatch, entityTag(file));
    if (request.ifModifiedSince.empty())
        return false;
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> since(
        soup_date_time_new_from_http_string(request.ifModifiedSince.c_str()), g_date_time_unref);
    return since && g_date_time_to_unix(since.get()) >= wholeSeconds(file.changedAt()).time_since_epoch().count();
}

} // namespace corvane::server
