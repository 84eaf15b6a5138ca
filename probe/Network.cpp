#include "Network.h"

#include "Answer.h"
#include "RunToEnd.h"
#include "base/Text.h"
#include "platform/AnalyticsLocalHTTPServer.h"
#include "platform/GioDesktop.h"
#include "platform/PosixFileStore.h"
#include "platform/PosixIncomingFiles.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "ports/AppInfo.h"
#include "updates/DMGDownloadHelper.h"

#include <array>

#include <fmt/format.h>
#include <glib-unix.h>
#include <unistd.h>

namespace corvane::probe {
namespace {

std::unexpected<Error> refused(std::string message)
{
    return std::unexpected(Error{std::move(message)});
}

Result<Json> fetched(BodyLimit limit, const std::string& address)
{
    const auto url = Url::parse(address);
    if (!url)
        return refused("This is no address: " + address);
    SoupHttpClient http(AppInfo::ofThisBuild().shortVersion);
    const auto answer = runToEnd(http.send({.url = *url, .limit = limit}));
    if (!answer)
        return std::unexpected(answer.error());
    return Json{{"status", answer->status}, {"bytes", answer->body.size()}, {"body", answer->body}};
}

Result<Json> downloaded(const std::string& address, const std::filesystem::path& folder,
                        std::optional<std::string> sha256)
{
    auto url = Url::parse(address);
    if (!url)
        return refused("This is no address: " + address);
    PosixFileStore files;
    PosixIncomingFiles incoming;
    SystemClock clock;
    SoupHttpClient http(AppInfo::ofThisBuild().shortVersion);
    GioDesktop desktop([] {});
    const Places places{.data = folder, .cache = folder, .defaults = folder / "defaults.json", .downloads = folder};
    DMGDownloadHelper installers(http, files, incoming, desktop, clock, places);
    const auto file = runToEnd(installers.download(*std::move(url), std::move(sha256), {}));
    if (!file)
        return std::unexpected(file.error());
    return Json{{"file", file->string()}};
}

/// Whether the standard input goes on.
gboolean dropInput(int input, GIOCondition, gpointer hasEnded)
{
    std::array<char, 4096> ignored{};
    if (::read(input, ignored.data(), ignored.size()) > 0)
        return G_SOURCE_CONTINUE;
    *static_cast<bool*>(hasEnded) = true;
    return G_SOURCE_REMOVE;
}

} // namespace

int fetch(std::span<const std::string> arguments)
{
    const auto& kind = arguments[0];
    if (kind != "json" && kind != "page")
        return refuse(fmt::format("{} is no kind of answer", kind));
    return report(fetched(kind == "json" ? BodyLimit::json : BodyLimit::page, arguments[1]));
}

int download(std::span<const std::string> arguments)
{
    return report(
        downloaded(arguments[0], arguments[1], arguments.size() > 2 ? std::optional(arguments[2]) : std::nullopt));
}

int servePage(std::span<const std::string> arguments)
{
    auto html = PosixFileStore().read(arguments[0]);
    if (!html)
        return report(refused("This file cannot be read: " + arguments[0]));
    int status = EXIT_SUCCESS;
    bool hasEnded = false;
    AnalyticsLocalHTTPServer server;
    server.startServer(*std::move(html), [&](const std::expected<Url, LoopbackFailure>& outcome) {
        status = outcome ? report(Json{{"url", outcome->text()}}) : report(refused(outcome.error().description));
        hasEnded = hasEnded || status != EXIT_SUCCESS;
    });
    g_unix_fd_add(STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), dropInput, &hasEnded);
    while (!hasEnded)
        g_main_context_iteration(nullptr, TRUE);
    return status;
}

} // namespace corvane::probe
