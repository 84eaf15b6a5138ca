#include "store/DeviceStore.h"

#include "data/Statement.h"

namespace corvane::server {

void DeviceStore::put(const Device& device, std::chrono::sys_seconds now)
{
    Statement(database_,
              "INSERT INTO devices (install_id, platform, product, app_version, registered_at, seen_at) "
              "VALUES (?1, ?2, ?3, ?4, ?5, ?5) ON CONFLICT (install_id) DO UPDATE SET "
              "platform = excluded.platform, product = excluded.product, app_version = excluded.app_version, "
              "seen_at = excluded.seen_at",
              device.installId, device.platform, device.product, device.appVersion, now)
        .run();
}

bool DeviceStore::isRegistered(std::string_view installId) const
{
    return Statement(database_, "SELECT 1 FROM devices WHERE install_id = ?", installId).step();
}

void DeviceStore::bind(std::string_view installId, std::int64_t profileId)
{
    Statement(database_, "UPDATE devices SET profile_id = ? WHERE install_id = ?", profileId, installId).run();
}

std::vector<Device> DeviceStore::boundTo(std::int64_t profileId) const
{
    Statement rows(database_,
                   "SELECT install_id, platform, product, app_version FROM devices WHERE profile_id = ? "
                   "ORDER BY registered_at, install_id",
                   profileId);
    std::vector<Device> devices;
    while (rows.step())
        devices.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3)});
    return devices;
}

std::int64_t DeviceStore::count() const
{
    Statement row(database_, "SELECT count(*) FROM devices");
    row.step();
    return row.integer(0);
}

} // namespace corvane::server
