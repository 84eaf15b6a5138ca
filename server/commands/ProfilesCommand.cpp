#include "commands/ProfilesCommand.h"

#include "store/DeviceStore.h"
#include "store/ProfileStore.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace corvane::server {

std::string listProfiles(Database& database)
{
    const DeviceStore devices(database);
    const auto profiles = ProfileStore(database).all();
    std::int64_t bound = 0;
    std::string lines;
    for (const auto& profile : profiles) {
        lines += fmt::format("{}  {}  {}  since {:%Y-%m-%d}\n", profile.id, profile.name,
                             profile.email.empty() ? "no e-mail" : profile.email,
                             fmt::gmtime(profile.createdAt.time_since_epoch().count()));
        for (const auto& device : devices.boundTo(profile.id)) {
            lines += fmt::format("     {}  {}  {}\n", device.installId, device.platform, device.appVersion);
            ++bound;
        }
    }
    return lines + fmt::format("Profiles: {}. Installs: {}, bound: {}.\n", profiles.size(), devices.count(), bound);
}

} // namespace corvane::server
