#pragma once

#include "data/Database.h"
#include "store/Delivery.h"
#include "store/Profile.h"

#include <chrono>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace corvane::server {

/// The campaigns and their deliveries. A campaign goes to the installations that exist when it is sent; a delivery
/// waits until its installation acknowledges it. What was sent to a profile waits only while the installation stays
/// bound to that profile.
class NotificationStore {
public:
    /// The most deliveries that one answer holds; the newest come first.
    static constexpr std::int64_t mostPending = 100;

    explicit NotificationStore(Database& database) : database_(database) {}

    /// Sends to every registered installation. The number of deliveries; with none, nothing is kept. These two run
    /// inside the caller's transaction.
    std::int64_t sendToAll(const Message& message, std::chrono::sys_seconds now);

    /// Sends to the installations bound to one of the profiles.
    std::int64_t sendTo(std::span<const Profile> profiles, const Message& message, std::chrono::sys_seconds now);

    std::vector<Delivery> pending(std::string_view installId) const;

    /// Marks those of the deliveries that are this installation's. The number of them, including those acknowledged
    /// before: a client that never saw the first answer can ask again.
    std::int64_t acknowledge(std::string_view installId, std::span<const std::int64_t> recipientIds,
                             std::chrono::sys_seconds now);

private:
    std::int64_t addCampaign(const Message& message, std::chrono::sys_seconds now);
    std::int64_t keepIfDelivered(std::int64_t campaign);

    Database& database_;
};

} // namespace corvane::server
