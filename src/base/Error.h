#pragma once

#include <expected>
#include <string>

namespace corvane {

/// An expected failure, as a value. `message` is a plain sentence fit to be shown to a user as text.
struct Error {
    std::string message;

    bool operator==(const Error&) const = default;
};

template <typename T>
using Result = std::expected<T, Error>;

} // namespace corvane
