#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace corvane::server {

/// A person's profile, made on the registration page. Names need not be unique.
struct Profile {
    std::int64_t id = 0;
    std::string name;
    std::string email; // empty when not given
    std::chrono::sys_seconds createdAt;
};

} // namespace corvane::server
