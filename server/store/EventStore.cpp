#include "store/EventStore.h"

#include "data/Statement.h"
#include "data/Transaction.h"

namespace corvane::server {

void EventStore::add(std::span<const UsageEvent> events)
{
    Transaction transaction(database_);
    for (const auto& event : events) {
        const auto parameters = compactJson(event.parameters);
        const auto properties = compactJson(event.userProperties);
        const auto size =
            event.clientId.size() + event.name.size() + parameters.size() + properties.size() + event.userAgent.size();
        Statement(database_,
                  "INSERT INTO events (received_at, measurement_id, client_id, session_id, sequence, name, "
                  "parameters, user_properties, user_agent, size) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                  event.receivedAt, event.measurementId, event.clientId, event.sessionId, event.sequence, event.name,
                  parameters, properties, event.userAgent, static_cast<std::int64_t>(size))
            .run();
    }
    removeOldest();
    transaction.commit();
}

std::vector<UsageEvent> EventStore::all() const
{
    Statement rows(database_, "SELECT received_at, measurement_id, client_id, session_id, sequence, name, parameters, "
                              "user_properties, user_agent FROM events ORDER BY id");
    std::vector<UsageEvent> events;
    while (rows.step())
        events.push_back({.receivedAt = rows.time(0),
                          .measurementId = rows.text(1),
                          .clientId = rows.text(2),
                          .sessionId = rows.integer(3),
                          .sequence = rows.integer(4),
                          .name = rows.text(5),
                          .parameters = parseJson(rows.text(6)).value_or(Json::object()),
                          .userProperties = parseJson(rows.text(7)).value_or(Json::object()),
                          .userAgent = rows.text(8)});
    return events;
}

void EventStore::removeOldest()
{
    do {
        Statement(database_,
                  "DELETE FROM events WHERE id = (SELECT min(id) FROM events) "
                  "AND EXISTS (SELECT 1 FROM event_totals WHERE events > ? OR bytes > ?)",
                  limits_.events, limits_.bytes)
            .run();
    } while (database_.changedRows() > 0);
}

} // namespace corvane::server
