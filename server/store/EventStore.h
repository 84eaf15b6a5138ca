#pragma once

#include "data/Database.h"
#include "store/UsageEvent.h"

#include <cstdint>
#include <span>
#include <vector>

namespace corvane::server {

/// The usage events in the order of their arrival. Anybody can send any number of them, so only the newest are kept.
class EventStore {
public:
    struct Limits {
        std::int64_t events = 100'000;
        std::int64_t bytes = std::int64_t{64} * 1024 * 1024;
    };

    explicit EventStore(Database& database) : EventStore(database, Limits()) {}
    EventStore(Database& database, Limits limits) : database_(database), limits_(limits) {}

    /// Adds all of them or, when the database fails, none; then removes the oldest until the limits hold.
    void add(std::span<const UsageEvent> events);

    std::vector<UsageEvent> all() const;

private:
    void removeOldest();

    Database& database_;
    Limits limits_;
};

} // namespace corvane::server
