#include "store/ProfileStore.h"

#include "data/Statement.h"
#include "store/Secret.h"

namespace corvane::server {
namespace {

std::vector<Profile> readAll(Statement& rows)
{
    std::vector<Profile> profiles;
    while (rows.step())
        profiles.push_back({rows.integer(0), rows.text(1), rows.text(2), rows.time(3)});
    return profiles;
}

} // namespace

Profile ProfileStore::add(std::string_view name, std::string_view email, std::string_view secret,
                          std::chrono::sys_seconds now)
{
    Statement(database_, "INSERT INTO profiles (name, email, secret, created_at) VALUES (?, ?, ?, ?)", name, email,
              digestOf(secret), now)
        .run();
    return {database_.lastInsertedId(), std::string(name), std::string(email), now};
}

std::optional<Profile> ProfileStore::findBySecret(std::string_view secret) const
{
    Statement rows(database_, "SELECT id, name, email, created_at FROM profiles WHERE secret = ?", digestOf(secret));
    auto found = readAll(rows);
    return found.empty() ? std::nullopt : std::optional(std::move(found.front()));
}

std::vector<Profile> ProfileStore::findByName(std::string_view name) const
{
    Statement rows(database_, "SELECT id, name, email, created_at FROM profiles WHERE name = ? ORDER BY id", name);
    return readAll(rows);
}

std::vector<Profile> ProfileStore::all() const
{
    Statement rows(database_, "SELECT id, name, email, created_at FROM profiles ORDER BY id");
    return readAll(rows);
}

void ProfileStore::remove(std::int64_t id)
{
    Statement(database_, "DELETE FROM profiles WHERE id = ?", id).run();
    Statement(database_, "DELETE FROM campaigns WHERE id NOT IN (SELECT campaign_id FROM recipients)").run();
}

} // namespace corvane::server
