#include "store/NotificationStore.h"

#include "data/Statement.h"
#include "data/Transaction.h"

#include <set>

namespace corvane::server {

std::int64_t NotificationStore::sendToAll(const Message& message, std::chrono::sys_seconds now)
{
    const auto campaign = addCampaign(message, now);
    Statement(database_,
              "INSERT INTO recipients (campaign_id, install_id) SELECT ?, install_id FROM devices ORDER BY rowid",
              campaign)
        .run();
    return keepIfDelivered(campaign);
}

std::int64_t NotificationStore::sendTo(std::span<const Profile> profiles, const Message& message,
                                       std::chrono::sys_seconds now)
{
    const auto campaign = addCampaign(message, now);
    for (const auto& profile : profiles) {
        Statement(database_,
                  "INSERT INTO recipients (campaign_id, install_id, profile_id) "
                  "SELECT ?, install_id, profile_id FROM devices WHERE profile_id = ? ORDER BY rowid",
                  campaign, profile.id)
            .run();
    }
    return keepIfDelivered(campaign);
}

std::vector<Delivery> NotificationStore::pending(std::string_view installId) const
{
    Statement rows(database_,
                   "SELECT r.id, c.id, c.title, c.body, c.url FROM recipients r "
                   "JOIN campaigns c ON c.id = r.campaign_id JOIN devices d ON d.install_id = r.install_id "
                   "WHERE r.install_id = ? AND r.acknowledged_at IS NULL "
                   "AND (r.profile_id IS NULL OR r.profile_id = d.profile_id) ORDER BY r.id DESC LIMIT ?",
                   installId, mostPending);
    std::vector<Delivery> deliveries;
    while (rows.step())
        deliveries.push_back({rows.integer(0), rows.integer(1), {rows.text(2), rows.text(3), rows.text(4)}});
    return deliveries;
}

std::int64_t NotificationStore::acknowledge(std::string_view installId, std::span<const std::int64_t> recipientIds,
                                            std::chrono::sys_seconds now)
{
    const std::set<std::int64_t> distinct(recipientIds.begin(), recipientIds.end());
    Transaction transaction(database_);
    std::int64_t acknowledged = 0;
    for (const auto id : distinct) {
        Statement(database_,
                  "UPDATE recipients SET acknowledged_at = coalesce(acknowledged_at, ?) "
                  "WHERE id = ? AND install_id = ?",
                  now, id, installId)
            .run();
        acknowledged += database_.changedRows();
    }
    transaction.commit();
    return acknowledged;
}

std::int64_t NotificationStore::addCampaign(const Message& message, std::chrono::sys_seconds now)
{
    Statement(database_, "INSERT INTO campaigns (title, body, url, created_at) VALUES (?, ?, ?, ?)", message.title,
              message.body, message.url, now)
        .run();
    return database_.lastInsertedId();
}

std::int64_t NotificationStore::keepIfDelivered(std::int64_t campaign)
{
    Statement row(database_, "SELECT count(*) FROM recipients WHERE campaign_id = ?", campaign);
    row.step();
    const auto deliveries = row.integer(0);
    row.reset();
    if (deliveries == 0)
        Statement(database_, "DELETE FROM campaigns WHERE id = ?", campaign).run();
    return deliveries;
}

} // namespace corvane::server
