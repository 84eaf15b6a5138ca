#pragma once

#include "data/Database.h"

#include <string>

namespace corvane::server {

/// The profiles with the installations bound to them, as lines to print. Shows no secret and no token.
std::string listProfiles(Database& database);

} // namespace corvane::server
