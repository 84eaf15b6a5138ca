#pragma once

#include "ports/MainQueue.h"

namespace corvane {

/// The queue of the GLib main loop.
class GlibMainQueue final : public MainQueue {
public:
    Subscription post(std::move_only_function<void()> action) override;
};

} // namespace corvane
