#include "async/WhenBoth.h"

#include "async/TaskScope.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Log = std::vector<std::string>;

/// A wait that a test ends by hand, or none at all.
struct Gate {
    bool isOpen = false;
    std::coroutine_handle<> waiter;

    bool await_ready() const noexcept { return isOpen; }
    void await_suspend(std::coroutine_handle<> handle) noexcept { waiter = handle; }
    void await_resume() const noexcept {}
};

class Trace {
public:
    Trace(Log* log, std::string name) : log_(log), name_(std::move(name)) {}
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;
    ~Trace() { log_->push_back("~" + name_); }

private:
    Log* log_;
    std::string name_;
};

Task<std::unique_ptr<int>> number(Log* log, Gate* gate)
{
    const Trace trace(log, "number");
    log->push_back("number starts");
    co_await *gate;
    co_return std::make_unique<int>(7);
}

Task<std::string> word(Log* log, Gate* gate)
{
    const Trace trace(log, "word");
    log->push_back("word starts");
    co_await *gate;
    co_return "seven";
}

Task<void> outer(Log* log, Gate* first, Gate* second)
{
    const Trace trace(log, "outer");
    auto [seven, name] = co_await whenBoth(number(log, first), word(log, second));
    log->push_back(name + "=" + std::to_string(*seven));
}

TEST(WhenBothTest, StartsBothAndGoesOnAfterTheLastInWhicheverOrderTheyEnd)
{
    struct Case {
        bool isFirstOpen, isSecondOpen;
        std::vector<int> answers;
    };
    for (const auto& [isFirstOpen, isSecondOpen, answers] : std::vector<Case>{
             {false, false, {0, 1}},
             {false, false, {1, 0}},
             {true, false, {1}},
             {false, true, {0}},
             {true, true, {}},
         }) {
        Log log;
        std::vector<Gate> gates{{.isOpen = isFirstOpen}, {.isOpen = isSecondOpen}};
        TaskScope scope;
        scope.start(outer(&log, &gates[0], &gates[1]));
        for (const int gate : answers) {
            EXPECT_FALSE(scope.isEmpty());
            EXPECT_EQ(std::ranges::count(log, "word starts"), 1);
            gates[static_cast<std::size_t>(gate)].waiter.resume();
        }
        EXPECT_TRUE(scope.isEmpty());
        EXPECT_EQ(log.front(), "number starts");
        ASSERT_GE(log.size(), 2U);
        EXPECT_EQ(log[log.size() - 2], "seven=7");
        EXPECT_EQ(log.back(), "~outer");
    }
}

TEST(WhenBothTest, CancellingDestroysWhatStillRuns)
{
    for (const int answered : {-1, 0, 1}) {
        Log log;
        std::vector<Gate> gates(2);
        TaskScope scope;
        scope.start(outer(&log, &gates[0], &gates[1]));
        if (answered >= 0)
            gates[static_cast<std::size_t>(answered)].waiter.resume();
        scope.cancel();
        for (const auto* name : {"~number", "~word", "~outer"})
            EXPECT_EQ(std::ranges::count(log, name), 1) << name << answered;
        EXPECT_EQ(log.back(), "~outer");
        EXPECT_EQ(std::ranges::count(log, "seven=7"), 0);
    }
}

TEST(WhenBothTest, IsNothingUntilItIsAwaited)
{
    Log log;
    Gate gate;
    {
        const auto never = whenBoth(number(&log, &gate), word(&log, &gate));
    }
    EXPECT_TRUE(log.empty());
}

} // namespace
} // namespace corvane
