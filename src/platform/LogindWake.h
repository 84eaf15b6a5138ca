#pragma once

#include "async/TaskScope.h"
#include "platform/GLibHandle.h"
#include "ports/Wake.h"

#include <sigc++/signal.h>

namespace corvane {

/// Wake-up as the login manager tells it on the system bus (the signal PrepareForSleep of org.freedesktop.login1).
/// Connects in the background; without a bus, and after the bus has gone, nothing is told.
class LogindWake final : public Wake {
public:
    LogindWake();
    LogindWake(const LogindWake&) = delete;
    LogindWake& operator=(const LogindWake&) = delete;
    ~LogindWake() override;

    Subscription observeWake(std::function<void()> woke) override;

private:
    Task<void> listen();

    GObjectPtr<GDBusConnection> bus_;
    guint signal_ = 0;
    sigc::signal<void()> woke_;
    TaskScope connecting_;
};

} // namespace corvane
