#pragma once

#include "ports/Wake.h"

#include <map>
#include <utility>

namespace corvane::testing {

/// A computer that wakes when a test says so.
class ManualWake final : public Wake {
public:
    Subscription observeWake(std::function<void()> woke) override
    {
        const auto serial = nextSerial_++;
        observers_.emplace(serial, std::move(woke));
        return Subscription([this, serial] { observers_.erase(serial); });
    }

    void wake()
    {
        for (const auto& [serial, woke] : observers_)
            woke();
    }

    std::size_t observers() const { return observers_.size(); }

private:
    std::size_t nextSerial_ = 0;
    std::map<std::size_t, std::function<void()>> observers_;
};

} // namespace corvane::testing
