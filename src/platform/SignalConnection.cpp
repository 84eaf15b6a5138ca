#include "platform/SignalConnection.h"

#include "platform/GLibHandle.h"

#include <utility>

namespace corvane {

SignalConnection::SignalConnection(gpointer emitter, const char* signal, GCallback handler, gpointer data)
    : handler_(g_signal_connect_data(emitter, signal, handler, data, nullptr, GConnectFlags{}))
{
    g_weak_ref_init(&emitter_, emitter);
}

SignalConnection::SignalConnection(SignalConnection&& other) noexcept : SignalConnection()
{
    *this = std::move(other);
}

SignalConnection& SignalConnection::operator=(SignalConnection&& other) noexcept
{
    if (this == &other)
        return *this;
    disconnect();
    const auto emitter = adopt(static_cast<GObject*>(g_weak_ref_get(&other.emitter_)));
    g_weak_ref_set(&emitter_, emitter.get());
    g_weak_ref_set(&other.emitter_, nullptr);
    handler_ = std::exchange(other.handler_, 0);
    return *this;
}

SignalConnection::~SignalConnection()
{
    disconnect();
    g_weak_ref_clear(&emitter_);
}

void SignalConnection::disconnect()
{
    const auto handler = std::exchange(handler_, 0);
    const auto emitter = adopt(static_cast<GObject*>(g_weak_ref_get(&emitter_)));
    // A disposed object has dropped its handlers already.
    if (emitter && handler != 0 && g_signal_handler_is_connected(emitter.get(), handler))
        g_signal_handler_disconnect(emitter.get(), handler);
    g_weak_ref_set(&emitter_, nullptr);
}

} // namespace corvane
