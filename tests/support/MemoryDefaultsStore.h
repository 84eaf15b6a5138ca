#pragma once

#include "ports/DefaultsStore.h"

#include <map>
#include <string>
#include <variant>

namespace corvane::testing {

/// Defaults that live in memory.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    std::optional<std::string> string(std::string_view key) const override { return get<std::string>(key); }
    std::optional<bool> boolean(std::string_view key) const override { return get<bool>(key); }
    void setString(std::string_view key, std::string_view value) override
    {
        values[std::string(key)] = std::string(value);
    }
    void setBoolean(std::string_view key, bool value) override { values[std::string(key)] = value; }
    void remove(std::string_view key) override { values.erase(std::string(key)); }

    std::map<std::string, std::variant<std::string, bool>, std::less<>> values;

private:
    template <typename T>
    std::optional<T> get(std::string_view key) const
    {
        const auto found = values.find(key);
        if (found == values.end())
            return std::nullopt;
        const auto* value = std::get_if<T>(&found->second);
        return value == nullptr ? std::nullopt : std::optional(*value);
    }
};

} // namespace corvane::testing
