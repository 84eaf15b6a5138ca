#pragma once

#include "base/Subscription.h"

#include <functional>
#include <utility>

#include <sigc++/signal.h>

namespace corvane {

/// A value that can be read, set and observed; setting an equal value is silent.
/// Observers are told after the value has changed, in the order in which they subscribed. They may set the value
/// again: the inner change is told to everyone first, and the outer round then shows observers the newest value.
/// Single-threaded.
template <typename T>
class Published {
public:
    using Observer = std::function<void(const T&)>;

    Published() = default;
    explicit Published(T value) : value_(std::move(value)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    const T& value() const { return value_; }
    const T& operator*() const { return value_; }
    const T* operator->() const { return &value_; }

    void set(T value)
    {
        if (value == value_)
            return;
        value_ = std::move(value);
        changed_.emit();
    }

    /// Tells `observer` of every later change until the subscription ends.
    [[nodiscard]] Subscription observe(Observer observer) const
    {
        auto connection = changed_.connect([this, call = std::move(observer)] { call(value_); });
        return Subscription([connection]() mutable { connection.disconnect(); });
    }

    /// Tells `observer` the value as it is now and every later change.
    [[nodiscard]] Subscription bind(Observer observer) const
    {
        observer(value_);
        return observe(std::move(observer));
    }

private:
    T value_{};
    mutable sigc::signal<void()> changed_;
};

} // namespace corvane
