#include "async/TaskScope.h"

#include "async/MainLoop.h"
#include "support/MainContext.h"

#include <coroutine>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::iteratePending;
using testing::iterateUntil;
using Log = std::vector<std::string>;

/// Writes down when the frame that holds it goes.
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

/// A wait that a test ends by hand.
struct Gate {
    std::coroutine_handle<> waiter;

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> handle) noexcept { waiter = handle; }
    void await_resume() const noexcept {}
};

Task<std::unique_ptr<int>> inner(Log* log, Gate* gate)
{
    const Trace trace(log, "inner");
    co_await *gate;
    co_return std::make_unique<int>(7);
}

Task<void> outer(Log* log, Gate* gate)
{
    const Trace trace(log, "outer");
    const auto value = co_await inner(log, gate);
    log->push_back("got " + std::to_string(*value));
}

TEST(TaskScopeTest, RunsToTheFirstWaitAndFreesFramesInnermostFirst)
{
    Log log;
    Gate gate;
    TaskScope scope;
    scope.start(outer(&log, &gate));
    EXPECT_FALSE(scope.isEmpty());
    EXPECT_TRUE(log.empty());
    gate.waiter.resume();
    EXPECT_TRUE(scope.isEmpty());
    EXPECT_EQ(log, (Log{"~inner", "got 7", "~outer"}));
    scope.cancel(); // after the end: nothing
}

TEST(TaskScopeTest, CancellingDestroysNestedFramesWithoutGoingOn)
{
    Log log;
    Gate gate;
    {
        TaskScope scope;
        scope.start(outer(&log, &gate));
    }
    EXPECT_EQ(log, (Log{"~inner", "~outer"}));
}

TEST(TaskScopeTest, ATaskThatIsNeverAwaitedNeverRuns)
{
    Log log;
    Gate gate;
    {
        const auto unused = outer(&log, &gate);
    }
    EXPECT_TRUE(log.empty());
}

Task<void> cancelWhenDone(Log* log, TaskScope* other)
{
    co_await Delay(std::chrono::milliseconds(0));
    other->cancel();
    log->push_back("cancelled the other");
}

TEST(TaskScopeTest, OneTasksTurnMayCancelAnotherThatIsDueInTheSameTurn)
{
    Log log;
    TaskScope first, second;
    first.start(cancelWhenDone(&log, &second));
    second.start(cancelWhenDone(&log, &first));
    ASSERT_TRUE(iterateUntil([&] { return first.isEmpty() && second.isEmpty(); }));
    iteratePending();
    EXPECT_EQ(log, Log{"cancelled the other"});
}

/// Starts another task in the same scope while it is being destroyed.
class StartsAnother {
public:
    StartsAnother(TaskScope* scope, Log* log, Gate* gate) : scope_(scope), log_(log), gate_(gate) {}
    StartsAnother(const StartsAnother&) = delete;
    StartsAnother& operator=(const StartsAnother&) = delete;
    ~StartsAnother() { scope_->start(outer(log_, gate_)); }

private:
    TaskScope* scope_;
    Log* log_;
    Gate* gate_;
};

Task<void> restartOnCancel(TaskScope* scope, Log* log, Gate* first, Gate* second)
{
    const StartsAnother starts(scope, log, second);
    co_await *first;
}

TEST(TaskScopeTest, CancellingAlsoEndsWhatTheDyingTasksStart)
{
    Log log;
    Gate first, second;
    TaskScope scope;
    scope.start(restartOnCancel(&scope, &log, &first, &second));
    scope.cancel();
    EXPECT_TRUE(scope.isEmpty());
    EXPECT_EQ(log, (Log{"~inner", "~outer"}));
}

Task<int> counted(int number)
{
    co_return number + 1;
}

Task<void> awaitMany(int* sum)
{
    for (int i = 0; i < 100'000; ++i) {
        const auto next = co_await counted(*sum);
        *sum = next;
    }
}

TEST(TaskScopeTest, ManyTasksInARowNeedNoMoreStack)
{
    int sum = 0;
    TaskScope scope;
    scope.start(awaitMany(&sum));
    EXPECT_EQ(sum, 100'000);
}

} // namespace
} // namespace corvane
