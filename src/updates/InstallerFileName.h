#pragma once

#include "base/Url.h"

#include <string>

namespace corvane {

/// The name under which the image at `url` is stored: the last component of its path (slashes at the end do not
/// count), decoded once, when that ends in ".dmg" and is a plain file name of at most 200 bytes; else "Corvane.dmg".
std::string installerFileName(const Url& url);

} // namespace corvane
