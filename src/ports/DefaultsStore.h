#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Small per-user values that survive restarts. Typed: a Boolean is not a string, and reading a key of the other type
/// gives nothing. Every change is on disk when the call returns; a failed write keeps the value for this run.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    virtual std::optional<std::string> string(std::string_view key) const = 0;
    virtual std::optional<bool> boolean(std::string_view key) const = 0;
    virtual void setString(std::string_view key, std::string_view value) = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace corvane
