#pragma once

#include <glib-object.h>

namespace corvane {

/// A handler of a C object's signal; it is disconnected when this object goes. Holds the emitter weakly: either may go
/// first. Empty when default-constructed or moved from.
class SignalConnection {
public:
    SignalConnection() { g_weak_ref_init(&emitter_, nullptr); }

    /// Connects a plain function whose last parameter receives `data`. `signal` may carry a detail, as in
    /// "notify::title".
    SignalConnection(gpointer emitter, const char* signal, GCallback handler, gpointer data);

    SignalConnection(const SignalConnection&) = delete;
    SignalConnection& operator=(const SignalConnection&) = delete;
    SignalConnection(SignalConnection&& other) noexcept;
    SignalConnection& operator=(SignalConnection&& other) noexcept;
    ~SignalConnection();

    /// Connects a member function of `owner` that takes the signal's parameters without the emitter.
    /// `owner` must outlive the connection and be of the class that declares it.
    template <auto method, typename Owner>
    static SignalConnection to(gpointer emitter, const char* signal, Owner* owner)
    {
        return SignalConnection(emitter, signal, trampoline<method>(method, owner), owner);
    }

    void disconnect();

private:
    template <auto method, typename Owner, typename Answer, typename... Arguments>
    static GCallback trampoline(Answer (Owner::*)(Arguments...), Owner*)
    {
        Answer (*call)(gpointer, Arguments..., gpointer) = [](gpointer, Arguments... arguments, gpointer owner) {
            return (static_cast<Owner*>(owner)->*method)(arguments...);
        };
        return reinterpret_cast<GCallback>(call);
    }

    GWeakRef emitter_{};
    gulong handler_ = 0;
};

} // namespace corvane
