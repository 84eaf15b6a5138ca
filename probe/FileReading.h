#pragma once

#include "base/Json.h"

#include <filesystem>
#include <string_view>

namespace corvane::probe {

/// How a file of one kind is read: what the program makes of its bytes, as the members of an object.
struct FileKind {
    std::string_view name;
    Json (*read)(const std::filesystem::path& file);
};

/// Null for a name that is no kind.
const FileKind* fileKindNamed(std::string_view name);

} // namespace corvane::probe
