#pragma once

#include "ports/Clock.h"

#include <chrono>
#include <string>
#include <string_view>

namespace corvane {

/// When a check began, in whole seconds; one value serves every request of the check.
using CheckTime = std::chrono::sys_seconds;

CheckTime checkTime(const Clock& clock);

/// The text of an address with the time as one more query value, so that no cache on the way answers in the server's
/// place. The text need not be an address yet.
std::string cacheBusted(std::string_view address, CheckTime time);

} // namespace corvane
