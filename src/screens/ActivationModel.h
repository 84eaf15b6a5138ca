#pragma once

#include "state/UpdateScheduler.h"

#include <functional>
#include <utility>

namespace corvane {

/// Turns the focus of single windows into the activation of the whole program: a dialog that opens or closes moves the
/// focus between two windows and is no activation; coming back from another program is one.
class ActivationModel {
public:
    using Question = std::function<bool()>;

    /// `isAnyWindowActive` is asked once for all the moves of a turn, in a later one.
    ActivationModel(MainQueue& queue, Question isAnyWindowActive, std::function<void()> activated)
        : isAnyWindowActive_(std::move(isAnyWindowActive)), activated_(std::move(activated)),
          checks_(queue, [this] { check(); })
    {
    }

    /// A window has gained or lost the focus.
    void focusMoved() { checks_.request(); }

private:
    void check()
    {
        const bool wasActive = std::exchange(isActive_, isAnyWindowActive_());
        if (isActive_ && !wasActive)
            activated_();
    }

    Question isAnyWindowActive_;
    std::function<void()> activated_;
    bool isActive_ = false;
    UpdateScheduler checks_;
};

} // namespace corvane
