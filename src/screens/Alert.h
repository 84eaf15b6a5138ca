#pragma once

#include <string>

namespace corvane {

/// A modal message with one button "OK". Both are plain text.
struct Alert {
    std::string message;
    std::string informativeText;

    bool operator==(const Alert&) const = default;
};

} // namespace corvane
