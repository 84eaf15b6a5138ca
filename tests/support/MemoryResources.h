#pragma once

#include "ports/Resources.h"

#include <map>

namespace corvane::testing {

/// Resources that live in memory, by file name.
class MemoryResources final : public Resources {
public:
    std::optional<std::filesystem::path> locate(std::string_view name, std::string_view extension) const override
    {
        const auto file = fileName(name, extension);
        return files.contains(file) ? std::optional(std::filesystem::path("/resources") / file) : std::nullopt;
    }
    std::optional<std::string> read(std::string_view name, std::string_view extension) const override
    {
        const auto found = files.find(fileName(name, extension));
        return found == files.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::string, std::string> files;

private:
    static std::string fileName(std::string_view name, std::string_view extension)
    {
        return std::string(name) + "." + std::string(extension);
    }
};

} // namespace corvane::testing
