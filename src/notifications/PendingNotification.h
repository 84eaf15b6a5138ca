#pragma once

#include "base/Json.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One notification that waits for this installation.
struct PendingNotification {
    std::int64_t recipientId = 0; // of this delivery: its identity, at least 1
    std::int64_t campaignId = 0;  // carried, never interpreted; 0 when the server gave none
    std::string title;
    std::string body; // plain text with line breaks, or a fragment of HTML
    std::string url;

    bool operator==(const PendingNotification&) const = default;
};

/// An integer in any of the forms that servers send: a number, whose fraction is dropped, or a string of decimal digits
/// with an optional sign. 0 for everything else, no value and what lies outside the signed 64-bit range.
std::int64_t jsonInt(const Json* value);

/// A string; empty for everything else and no value.
std::string jsonString(const Json* value);

/// Reads one element of the server's list; empty when it has no recipient of at least 1.
std::optional<PendingNotification> decodeNotification(const Json& element);

/// Reads the server's whole answer, the largest recipient first. Nothing but malformed JSON fails: a document of
/// another form holds no notifications.
std::optional<std::vector<PendingNotification>> decodePending(std::string_view body);

} // namespace corvane
