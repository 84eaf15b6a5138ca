#pragma once

#include "base/Error.h"
#include "store/UsageEvent.h"

#include <string_view>
#include <vector>

namespace corvane::server {

/// A request to the collect address in version 2 of the Google Analytics 4 protocol: the query describes one event or,
/// when there is a body, what the events have in common; then each line of the body adds what is an event's own.
///
/// The items: v = 2, tid (measurement identifier), cid (client), sid (session), _s (number of the request in it), en
/// (name of the event), ep.NAME and epn.NAME (its parameters: texts and numbers), up.NAME and upn.NAME (user
/// properties). All but the last four kinds are required; others are ignored. A "+" is a plus sign.
struct CollectRequest {
    static constexpr std::size_t longest = std::size_t{64} * 1024; // bytes of query and body together
    static constexpr std::size_t mostEvents = 25;
    static constexpr std::size_t mostItems = 100; // of one event
    static constexpr std::size_t longestClient = 128;
    static constexpr std::size_t longestName = 64; // of an event, a parameter or a user property

    /// The events, in order, at least one. Their time of arrival and user agent are not part of it. A failure says
    /// what is wrong with the first event that is not as it must be.
    static Result<std::vector<UsageEvent>> read(std::string_view query, std::string_view body);

    /// Whether the text is "G-" and ten upper-case letters or digits.
    static bool isMeasurementId(std::string_view text);
};

} // namespace corvane::server
