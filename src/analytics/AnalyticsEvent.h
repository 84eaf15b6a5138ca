#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace corvane {

/// What a parameter of an event says; text is UTF-8.
using AnalyticsValue = std::variant<std::string, std::int64_t, double, bool>;

/// Parameters of an event by name, in the order of their names.
using AnalyticsParams = std::map<std::string, AnalyticsValue>;

/// Something that happened, for the usage statistics.
struct AnalyticsEvent {
    std::string name;
    AnalyticsParams params;

    bool operator==(const AnalyticsEvent&) const = default;
};

} // namespace corvane
