#include "store/BindingTokenStore.h"

#include "data/Statement.h"
#include "store/Secret.h"

namespace corvane::server {

std::string BindingTokenStore::issue(std::int64_t profileId, std::chrono::sys_seconds now)
{
    static constexpr std::size_t tokenBytes = 16;
    Statement(database_, "DELETE FROM binding_tokens WHERE expires_at <= ?", now).run();
    auto token = randomSecret(tokenBytes);
    Statement(database_, "INSERT INTO binding_tokens (token, profile_id, expires_at) VALUES (?, ?, ?)", digestOf(token),
              profileId, std::chrono::sys_seconds(now + lifetime))
        .run();
    return token;
}

std::optional<std::int64_t> BindingTokenStore::profileOf(std::string_view token, std::chrono::sys_seconds now) const
{
    Statement row(database_, "SELECT profile_id FROM binding_tokens WHERE token = ? AND expires_at > ?",
                  digestOf(token), now);
    return row.step() ? std::optional(row.integer(0)) : std::nullopt;
}

void BindingTokenStore::spend(std::string_view token)
{
    Statement(database_, "DELETE FROM binding_tokens WHERE token = ?", digestOf(token)).run();
}

} // namespace corvane::server
