#pragma once

#include "api/Now.h"

#include <string>
#include <string_view>

namespace corvane::server {

/// Every `from` in `text` replaced by `to`.
std::string replacedAll(std::string text, std::string_view from, std::string_view to);

/// A day as release notes write it: "Aug 12, 2026". In UTC.
std::string dayText(std::chrono::sys_seconds time);

} // namespace corvane::server
