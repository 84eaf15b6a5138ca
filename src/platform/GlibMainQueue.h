#pragma once

#include "ports/MainQueue.h"

#include <deque>
#include <mutex>

namespace corvane {

/// The queue of the GLib main loop. Other threads put their actions into an inbox under a lock, and for each action
/// give the default main context one idle source that takes one out.
class GlibMainQueue final : public MainQueue {
public:
    GlibMainQueue() = default;
    GlibMainQueue(const GlibMainQueue&) = delete;
    GlibMainQueue& operator=(const GlibMainQueue&) = delete;
    ~GlibMainQueue() override;

    Subscription post(std::move_only_function<void()> action) override;
    void postFromAnyThread(std::move_only_function<void()> action) override;

private:
    void runNext();

    std::mutex lock_;
    std::deque<std::move_only_function<void()>> inbox_;
};

} // namespace corvane
