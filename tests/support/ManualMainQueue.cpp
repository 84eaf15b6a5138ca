#include "support/ManualMainQueue.h"

namespace corvane::testing {

Subscription ManualMainQueue::post(std::move_only_function<void()> action)
{
    const auto serial = nextSerial_++;
    posted_.emplace(serial, std::move(action));
    return Subscription([this, serial] { posted_.erase(serial); });
}

void ManualMainQueue::runTurn()
{
    const auto end = nextSerial_;
    while (!posted_.empty() && posted_.begin()->first < end) {
        auto next = posted_.extract(posted_.begin());
        next.mapped()();
    }
}

void ManualMainQueue::runAll()
{
    while (!posted_.empty())
        runTurn();
}

} // namespace corvane::testing
