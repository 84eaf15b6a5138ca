#pragma once

#include "base/Url.h"

#include <string>

namespace corvane {

/// One page of earlier release notes.
struct ArchiveEntry {
    Url url;
    std::string title;

    bool operator==(const ArchiveEntry&) const = default;
};

} // namespace corvane
