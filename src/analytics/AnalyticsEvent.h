#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace corvane {

/// Parameters of an event by name, in the order of their names.
using AnalyticsParams = std::map<std::string, std::variant<std::string, std::int64_t>>;

/// Something that happened, for the usage statistics.
struct AnalyticsEvent {
    std::string name;
    AnalyticsParams params;

    bool operator==(const AnalyticsEvent&) const = default;
};

} // namespace corvane
