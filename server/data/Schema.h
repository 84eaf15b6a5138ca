#pragma once

namespace corvane::server {

/// The tables of schema version 1. Times are whole seconds since 1970. Secrets and tokens are kept only as SHA-256
/// digests in hexadecimal. Keys are never used twice, so that an old acknowledgement cannot meet a newer delivery.
inline constexpr const char* schemaOne = R"sql(
CREATE TABLE profiles (
    id          INTEGER PRIMARY KEY AUTOINCREMENT,
    name        TEXT NOT NULL,
    email       TEXT NOT NULL,
    secret      TEXT NOT NULL UNIQUE,
    created_at  INTEGER NOT NULL
) STRICT;

CREATE TABLE binding_tokens (
    token       TEXT PRIMARY KEY,
    profile_id  INTEGER NOT NULL REFERENCES profiles (id) ON DELETE CASCADE,
    expires_at  INTEGER NOT NULL
) STRICT;
CREATE INDEX binding_tokens_by_profile ON binding_tokens (profile_id);

CREATE TABLE devices (
    install_id    TEXT PRIMARY KEY,
    platform      TEXT NOT NULL,
    product       TEXT NOT NULL,
    app_version   TEXT NOT NULL,
    profile_id    INTEGER REFERENCES profiles (id) ON DELETE SET NULL,
    registered_at INTEGER NOT NULL,
    seen_at       INTEGER NOT NULL
) STRICT;
CREATE INDEX devices_by_profile ON devices (profile_id);

CREATE TABLE campaigns (
    id          INTEGER PRIMARY KEY AUTOINCREMENT,
    title       TEXT NOT NULL,
    body        TEXT NOT NULL,
    url         TEXT NOT NULL,
    created_at  INTEGER NOT NULL
) STRICT;

-- One delivery of a campaign to one install. `profile_id` is set when the campaign was addressed to that profile.
CREATE TABLE recipients (
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    campaign_id     INTEGER NOT NULL REFERENCES campaigns (id) ON DELETE CASCADE,
    install_id      TEXT NOT NULL REFERENCES devices (install_id) ON DELETE CASCADE,
    profile_id      INTEGER REFERENCES profiles (id) ON DELETE CASCADE,
    acknowledged_at INTEGER,
    UNIQUE (campaign_id, install_id)
) STRICT;
CREATE INDEX recipients_by_install ON recipients (install_id, acknowledged_at);
CREATE INDEX recipients_by_profile ON recipients (profile_id);
)sql";

/// What schema version 2 adds: the usage events, and how many there are. `size` counts the bytes of an event's texts.
inline constexpr const char* schemaTwo = R"sql(
CREATE TABLE events (
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    received_at     INTEGER NOT NULL,
    measurement_id  TEXT NOT NULL,
    client_id       TEXT NOT NULL,
    session_id      INTEGER NOT NULL,
    sequence        INTEGER NOT NULL,
    name            TEXT NOT NULL,
    parameters      TEXT NOT NULL, -- a JSON object of texts and numbers, as is the next
    user_properties TEXT NOT NULL,
    user_agent      TEXT NOT NULL,
    size            INTEGER NOT NULL
) STRICT;

CREATE TABLE event_totals (
    events INTEGER NOT NULL,
    bytes  INTEGER NOT NULL
) STRICT;
INSERT INTO event_totals VALUES (0, 0);
CREATE TRIGGER event_added AFTER INSERT ON events BEGIN
    UPDATE event_totals SET events = events + 1, bytes = bytes + NEW.size;
END;
CREATE TRIGGER event_removed AFTER DELETE ON events BEGIN
    UPDATE event_totals SET events = events - 1, bytes = bytes - OLD.size;
END;
)sql";

} // namespace corvane::server
