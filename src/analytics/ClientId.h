#pragma once

#include "ports/Clock.h"
#include "ports/DefaultsStore.h"
#include "ports/HostInfo.h"

#include <string>

namespace corvane {

/// The identifier under which this user's events are counted; ends with "_rel". It is derived from the names of machine
/// and user the first time and stored without its ending; a stored text is used as it stands and never rewritten.
std::string makeClientId(DefaultsStore& defaults, const HostInfo& host, const Clock& clock);

} // namespace corvane
