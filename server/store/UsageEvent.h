#pragma once

#include "base/Json.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace corvane::server {

/// One usage event as it was collected.
struct UsageEvent {
    std::chrono::sys_seconds receivedAt;
    std::string measurementId;
    std::string clientId;
    std::int64_t sessionId = 0;
    std::int64_t sequence = 0; // of the request within its session; events of one request share it
    std::string name;
    Json parameters = Json::object(); // texts and numbers by name
    Json userProperties = Json::object();
    std::string userAgent;
};

} // namespace corvane::server
