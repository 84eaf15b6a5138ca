#pragma once

#include "data/Database.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// The tokens by which an installation is bound to a profile: 128 random bits, good for one use within `lifetime`.
class BindingTokenStore {
public:
    /// Longer than the half hour after which the application tries a failed binding again.
    static constexpr std::chrono::minutes lifetime{60};

    explicit BindingTokenStore(Database& database) : database_(database) {}

    /// A new token for the profile. Tokens that have expired are removed on the way.
    std::string issue(std::int64_t profileId, std::chrono::sys_seconds now);

    /// The profile of a token that is still good; nothing when it is unknown, spent or expired.
    std::optional<std::int64_t> profileOf(std::string_view token, std::chrono::sys_seconds now) const;

    void spend(std::string_view token);

private:
    Database& database_;
};

} // namespace corvane::server
