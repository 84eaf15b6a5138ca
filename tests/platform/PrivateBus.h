#pragma once

#include "platform/GLibHandle.h"

#include <string>

namespace corvane::testing {

/// A message bus of its own for one test; it ends with this object.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_ = adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr, "dbus-daemon", "--session",
                                         "--nofork", "--print-address", nullptr));
        if (!daemon_)
            return;
        const auto lines = adopt(g_data_input_stream_new(g_subprocess_get_stdout_pipe(daemon_.get())));
        const auto line = adopt(g_data_input_stream_read_line(lines.get(), nullptr, nullptr, nullptr));
        address_ = line ? line.get() : "";
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() { end(); }

    const std::string& address() const { return address_; }

    void end()
    {
        if (!daemon_)
            return;
        g_subprocess_force_exit(daemon_.get());
        g_subprocess_wait(daemon_.get(), nullptr, nullptr);
    }

    /// A connection of its own to this bus.
    GObjectPtr<GDBusConnection> connect() const
    {
        const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        return adopt(g_dbus_connection_new_for_address_sync(address_.c_str(), flags, nullptr, nullptr, nullptr));
    }

private:
    GObjectPtr<GSubprocess> daemon_;
    std::string address_;
};

} // namespace corvane::testing
