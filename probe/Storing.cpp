#include "Storing.h"

#include "Answer.h"
#include "Environment.h"
#include "catalogue/SiteListManager.h"
#include "platform/FolderResources.h"
#include "platform/JsonDefaultsStore.h"
#include "platform/PosixFileStore.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "platform/XdgPlaces.h"
#include "ports/AppInfo.h"

#include <cstdlib>

#include <glib.h>

namespace corvane::probe {
namespace {

/// The places of a home folder without a configuration of its own. To be called before anything asks for places.
Places placesIn(const std::string& home)
{
    ::setenv("HOME", std::filesystem::absolute(home).c_str(), 1);
    for (const auto* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        ::unsetenv(name);
    return xdgPlaces();
}

std::unexpected<Error> notDone(std::string message)
{
    return std::unexpected(Error{std::move(message)});
}

std::optional<std::string> storedDefault(const std::string& key)
{
    PosixFileStore files;
    return JsonDefaultsStore(files, xdgPlaces().defaults).string(key);
}

} // namespace

int save(std::span<const std::string> arguments)
{
    const auto bytes = standardInput();
    if (auto written = PosixFileStore().write(arguments[0], bytes); !written)
        return report(std::unexpected(std::move(written.error())));
    return report(Json{{"file", arguments[0]}, {"bytes", bytes.size()}});
}

int apply(std::span<const std::string> arguments)
{
    const auto places = placesIn(arguments[0]);
    const auto document = standardInput();
    PosixFileStore files;
    SystemClock clock;
    SoupHttpClient http(AppInfo::ofThisBuild().shortVersion);
    const auto resources = FolderResources::ofThisProgram();
    SiteListManager manager(files, resources, places, SiteListFetcher(http, clock, endpoints()));
    manager.applyPendingSiteData(document);
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) { // a long list comes into use in idle turns
    }
    // The program says nothing of a list that could not be stored; here the file tells.
    const auto file = manager.sitesFileURL();
    if (files.read(file) != document)
        return report(notDone("The list was not stored."));
    return report(Json{{"file", file.string()}, {"services", manager.sites()->size()}});
}

int sweep(std::span<const std::string> arguments)
{
    const auto places = placesIn(arguments[0]);
    PosixFileStore().sweepAll(places);
    return report(Json{{"data", places.data.string()}});
}

int setDefault(std::span<const std::string> arguments)
{
    const auto& key = arguments[0];
    const auto value = arguments[1] == "-" ? standardInput() : arguments[1];
    {
        PosixFileStore files;
        JsonDefaultsStore defaults(files, xdgPlaces().defaults);
        defaults.setString(key, value);
    }
    // The store keeps a value that it could not write for its own run; another one tells what is on disk.
    if (storedDefault(key) != value)
        return report(notDone("The value was not stored."));
    return report(Json{{"key", key}, {"bytes", value.size()}});
}

int getDefault(std::span<const std::string> arguments)
{
    return report(Json{{"key", arguments[0]}, {"value", orNull(storedDefault(arguments[0]))}});
}

} // namespace corvane::probe
