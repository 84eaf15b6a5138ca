#pragma once

#include "base/Error.h"
#include "base/Json.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane::probe {

/// Prints a document of our own making as one line of JSON, at once.
void print(const Json& answer);

/// Prints the answer and gives the exit status for it: a failure is {"error": its sentence} and 1.
int report(const Result<Json>& answer);

/// Says on the standard error stream what is wrong with the command line, a sentence without its end, and gives the
/// exit status for that.
int refuse(std::string_view why);

/// A text, or null.
inline Json orNull(const std::optional<std::string>& text)
{
    return text ? Json(*text) : Json();
}

} // namespace corvane::probe
