#pragma once

#include <string_view>

namespace corvane {

/// Whether a version such as "1.10" is newer than another. Compared are the numbers between the dots, place by place, a
/// missing one as 0; a piece that is no decimal number of 64 bits is left out, so "1.2.3-beta" counts as 1.2.
bool isVersionNewer(std::string_view version, std::string_view than);

} // namespace corvane
