#pragma once

#include "store/Message.h"

#include <cstdint>

namespace corvane::server {

/// One message on its way to one installation.
struct Delivery {
    std::int64_t recipientId = 0;
    std::int64_t campaignId = 0;
    Message message;
};

} // namespace corvane::server
