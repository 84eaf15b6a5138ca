#pragma once

#include "base/Error.h"

#include <string_view>

namespace corvane {

/// Takes bytes piece by piece, in order.
class ByteSink {
public:
    virtual ~ByteSink() = default;

    /// A failure ends whatever the bytes come from.
    virtual Result<void> write(std::string_view bytes) = 0;
};

} // namespace corvane
