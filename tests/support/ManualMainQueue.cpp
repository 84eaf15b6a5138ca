#include "support/ManualMainQueue.h"

namespace corvane::testing {

Subscription ManualMainQueue::post(std::move_only_function<void()> action)
{
    return Subscription([this, serial = add(std::move(action))] {
        std::unique_lock guard(lock_);
        const auto dropped = posted_.extract(serial);
        guard.unlock(); // What the action holds may end other posts as it goes.
    });
}

void ManualMainQueue::postFromAnyThread(std::move_only_function<void()> action)
{
    add(std::move(action));
}

void ManualMainQueue::runTurn()
{
    std::size_t end = 0;
    {
        const std::scoped_lock guard(lock_);
        end = nextSerial_;
    }
    while (auto action = takeBefore(end))
        action();
}

void ManualMainQueue::runAll()
{
    while (!isEmpty())
        runTurn();
}

bool ManualMainQueue::isEmpty() const
{
    const std::scoped_lock guard(lock_);
    return posted_.empty();
}

std::size_t ManualMainQueue::add(std::move_only_function<void()> action)
{
    const std::scoped_lock guard(lock_);
    posted_.emplace(nextSerial_, std::move(action));
    return nextSerial_++;
}

std::move_only_function<void()> ManualMainQueue::takeBefore(std::size_t end)
{
    const std::scoped_lock guard(lock_);
    if (posted_.empty() || posted_.begin()->first >= end)
        return nullptr;
    return std::move(posted_.extract(posted_.begin()).mapped());
}

} // namespace corvane::testing
