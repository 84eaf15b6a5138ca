#include "platform/LogindWake.h"

#include "platform/GioCall.h"

#include <utility>

namespace corvane {
namespace {

GioCall<GObjectPtr<GDBusConnection>> systemBus()
{
    return GioCall<GObjectPtr<GDBusConnection>>(
        adopt(g_cancellable_new()),
        [](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
            g_bus_get(G_BUS_TYPE_SYSTEM, cancel, done, data);
        },
        [](GObject*, GAsyncResult* result) { return adopt(g_bus_get_finish(result, nullptr)); });
}

void prepareForSleep(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant* parameters,
                     gpointer woke)
{
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")))
        return;
    gboolean isGoingToSleep = TRUE;
    g_variant_get(parameters, "(b)", &isGoingToSleep);
    if (!isGoingToSleep)
        static_cast<sigc::signal<void()>*>(woke)->emit();
}

} // namespace

LogindWake::LogindWake()
{
    connecting_.start(listen());
}

LogindWake::~LogindWake()
{
    if (signal_ != 0)
        g_dbus_connection_signal_unsubscribe(bus_.get(), signal_);
}

Subscription LogindWake::observeWake(std::function<void()> woke)
{
    auto connection = woke_.connect([call = std::move(woke)] { call(); });
    return Subscription([connection]() mutable { connection.disconnect(); });
}

Task<void> LogindWake::listen()
{
    bus_ = co_await systemBus();
    if (!bus_)
        co_return;
    // Otherwise the end of the bus would end the program.
    g_dbus_connection_set_exit_on_close(bus_.get(), FALSE);
    signal_ = g_dbus_connection_signal_subscribe(bus_.get(), "org.freedesktop.login1", "org.freedesktop.login1.Manager",
                                                 "PrepareForSleep", "/org/freedesktop/login1", nullptr,
                                                 G_DBUS_SIGNAL_FLAGS_NONE, prepareForSleep, &woke_, nullptr);
}

} // namespace corvane
