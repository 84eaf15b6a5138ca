#pragma once

#include "base/Published.h"
#include "base/Subscription.h"

namespace corvane {

/// A published flag that is up as long as somebody holds it, so that work which is cancelled or overlaps cannot leave
/// it in the wrong place. Must outlive its holds.
class BusyFlag {
public:
    [[nodiscard]] Subscription hold()
    {
        ++holds_;
        isUp_.set(true);
        return Subscription([this] {
            if (--holds_ == 0)
                isUp_.set(false);
        });
    }

    const Published<bool>& isUp() const { return isUp_; }

private:
    int holds_ = 0;
    Published<bool> isUp_;
};

} // namespace corvane
