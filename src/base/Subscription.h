#pragma once

#include <functional>
#include <utility>

namespace corvane {

/// Something that lasts until this object goes: an observation, a posted call, a registration.
/// Empty when default-constructed or moved from. Ending it is safe at any time, also from inside the observer.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::move_only_function<void()> end) : end_(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            end();
            end_ = std::exchange(other.end_, nullptr);
        }
        return *this;
    }
    ~Subscription() { end(); }

    void end()
    {
        if (auto ending = std::exchange(end_, nullptr))
            ending();
    }

    bool isActive() const { return static_cast<bool>(end_); }

private:
    std::move_only_function<void()> end_;
};

} // namespace corvane
