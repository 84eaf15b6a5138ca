#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What the registration page tells the program.
struct PageReport {
    enum class Action : std::uint8_t { success, binddevice, deleteProfile };

    Action action = Action::success;
    std::optional<std::string> bindingToken; // trimmed, never empty

    bool operator==(const PageReport&) const = default;
};

/// Reads a message body, given as JSON: a text that is an action or holds a JSON object, or an object with its action
/// under "action", "type" or "message". Empty for everything else, for bodies over 64 KB and for nesting over 64
/// levels.
std::optional<PageReport> readPageReport(std::string_view bodyJson);

} // namespace corvane
