#pragma once

#include "base/Url.h"

namespace corvane {

/// A mailto address (RFC 6068) without fields that would attach files of this machine to the mail, and without a
/// fragment; every other address as it is.
Url withoutAttachments(const Url& url);

} // namespace corvane
