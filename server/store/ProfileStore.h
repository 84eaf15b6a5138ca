#pragma once

#include "data/Database.h"
#include "store/Profile.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::server {

/// The profiles. A browser proves that one is its own with the secret that it was given when the profile was made.
class ProfileStore {
public:
    explicit ProfileStore(Database& database) : database_(database) {}

    /// Adds a profile whose owner is whoever presents `secret`.
    Profile add(std::string_view name, std::string_view email, std::string_view secret, std::chrono::sys_seconds now);

    std::optional<Profile> findBySecret(std::string_view secret) const;

    /// Every profile of exactly this name.
    std::vector<Profile> findByName(std::string_view name) const;

    std::vector<Profile> all() const;

    /// Removes the profile with its binding tokens and with what was sent to it alone; its devices stay, unbound.
    /// Runs inside the caller's transaction.
    void remove(std::int64_t id);

private:
    Database& database_;
};

} // namespace corvane::server
