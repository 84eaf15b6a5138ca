#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The read-only files that ship with the program.
class Resources {
public:
    virtual ~Resources() = default;

    /// Where the resource `name`.`extension` lies; empty when there is none. A name is one path component.
    virtual std::optional<std::filesystem::path> locate(std::string_view name, std::string_view extension) const = 0;

    /// Its bytes; empty when it is missing or unreadable.
    virtual std::optional<std::string> read(std::string_view name, std::string_view extension) const = 0;
};

} // namespace corvane
