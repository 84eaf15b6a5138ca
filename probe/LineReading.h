#pragma once

#include "base/Error.h"
#include "base/Json.h"

#include <string>
#include <string_view>

namespace corvane::probe {

/// How a line of JSON on the standard input is answered: by what the program makes of the text in it. The failure says
/// what the line should have been.
struct LineKind {
    std::string_view name;
    Result<Json> (*answer)(const std::string& line, const Json& value);
};

/// Null for a name that is no kind.
const LineKind* lineKindNamed(std::string_view name);

/// Answers every line of the standard input until it ends. A line that cannot be read gets {"error": why}.
void answerLines(const LineKind& kind);

} // namespace corvane::probe
