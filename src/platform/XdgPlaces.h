#pragma once

#include "ports/Places.h"

namespace corvane {

/// Where this user's files of the program lie by the XDG base folders, which GLib reads once per process. Creates
/// nothing.
Places xdgPlaces();

} // namespace corvane
