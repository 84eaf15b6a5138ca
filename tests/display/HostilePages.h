#pragma once

#include "base/Json.h"

#include <string>
#include <string_view>

namespace corvane::testing {

/// Text as a script's literal that may stand inside a script element.
inline std::string scriptText(std::string_view text)
{
    auto literal = compactJson(Json(text));
    for (auto place = literal.find("</"); place != std::string::npos; place = literal.find("</", place))
        literal.insert(place + 1, "\\");
    return literal;
}

inline std::string scripted(const std::string& script)
{
    return "<!doctype html><body><script>" + script + "</script>";
}

} // namespace corvane::testing
