#pragma once

#include "data/Database.h"
#include "store/Device.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::server {

/// The registered installations and the profile each is bound to.
class DeviceStore {
public:
    explicit DeviceStore(Database& database) : database_(database) {}

    /// Adds the installation or refreshes what is known of it; its profile stays.
    void put(const Device& device, std::chrono::sys_seconds now);

    bool isRegistered(std::string_view installId) const;

    /// Binds a registered installation to a profile; an earlier one is replaced.
    void bind(std::string_view installId, std::int64_t profileId);

    /// In the order of their registration.
    std::vector<Device> boundTo(std::int64_t profileId) const;

    /// The number of installations, bound or not.
    std::int64_t count() const;

private:
    Database& database_;
};

} // namespace corvane::server
