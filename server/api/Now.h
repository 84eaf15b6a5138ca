#pragma once

#include <chrono>
#include <functional>

namespace corvane::server {

/// What time it is, in whole seconds.
using Now = std::function<std::chrono::sys_seconds()>;

/// The system's time.
inline std::chrono::sys_seconds systemNow()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

} // namespace corvane::server
