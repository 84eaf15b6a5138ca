#include "platform/SignalConnection.h"

#include "platform/GLibHandle.h"

#include <optional>
#include <utility>

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

/// Counts the changes of an action's state, and connects with a member function.
struct Counter {
    void changed(GParamSpec* property) { count += property != nullptr ? 1 : 100; }

    SignalConnection to(const GObjectPtr<GSimpleAction>& action)
    {
        return SignalConnection::to<&Counter::changed>(action.get(), "notify::enabled", this);
    }

    int count = 0;
};

TEST(SignalConnectionTest, LastsAsLongAsTheConnectionWhoeverGoesFirst)
{
    auto action = adopt(g_simple_action_new("a", nullptr));
    const auto toggle = [&] {
        g_simple_action_set_enabled(action.get(), !g_action_get_enabled(G_ACTION(action.get())));
    };
    Counter counter;
    std::optional<SignalConnection> connection(counter.to(action));
    toggle();
    EXPECT_EQ(counter.count, 1);
    auto moved = std::move(*connection);
    connection.reset(); // moved from: nothing ends
    toggle();
    EXPECT_EQ(counter.count, 2);
    moved = counter.to(action); // the old one ends
    toggle();
    EXPECT_EQ(counter.count, 3);
    moved.disconnect();
    toggle();
    EXPECT_EQ(counter.count, 3);

    moved = counter.to(action);
    g_object_run_dispose(G_OBJECT(action.get()));
    moved.disconnect();
    moved = counter.to(action);
    action.reset(); // the emitter goes first
    moved.disconnect();
    EXPECT_EQ(counter.count, 3);
}

} // namespace
} // namespace corvane
