#include "platform/LogindWake.h"

#include "platform/PrivateBus.h"
#include "support/MainContext.h"

#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::iteratePending;
using testing::iterateUntil;

constexpr auto python = "/usr/bin/python3"; // the one for which distributions package dbusmock

/// The login manager's place on a private bus, taken by dbusmock.
class LogindWakeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const auto probe = adopt(
            g_subprocess_new(G_SUBPROCESS_FLAGS_STDERR_SILENCE, nullptr, python, "-c", "import dbusmock", nullptr));
        if (bus_.address().empty() || !probe || !g_subprocess_wait_check(probe.get(), nullptr, nullptr))
            GTEST_SKIP() << "dbus-daemon or python3-dbusmock is missing.";
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.address().c_str(), 1);
        mock_ = adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, nullptr, python, "-m", "dbusmock", "--system",
                                       "--template", "logind", nullptr));
        other_ = bus_.connect();
        ASSERT_TRUE(mock_ && other_);
        ASSERT_TRUE(iterateUntil([this] { return emit(true); })) << "dbusmock did not start";
    }

    void TearDown() override
    {
        if (mock_) {
            g_subprocess_force_exit(mock_.get());
            g_subprocess_wait(mock_.get(), nullptr, nullptr);
        }
        unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }

    /// Lets the login manager tell that the computer goes to sleep or has woken. False while it is not there.
    bool emit(bool isGoingToSleep)
    {
        GVariant* arguments[] = {g_variant_new_variant(g_variant_new_boolean(isGoingToSleep))};
        const auto answer = adopt(
            g_dbus_connection_call_sync(other_.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                        "org.freedesktop.DBus.Mock", "EmitSignal",
                                        g_variant_new("(sss@av)", "org.freedesktop.login1.Manager", "PrepareForSleep",
                                                      "b", g_variant_new_array(G_VARIANT_TYPE_VARIANT, arguments, 1)),
                                        nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr));
        g_main_context_wakeup(nullptr); // whoever waits for more looks again
        return answer != nullptr;
    }

    /// Takes the turns for everything that the bus has sent to this program so far.
    static void settle()
    {
        const auto shared = adopt(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
        const auto answer = adopt(g_dbus_connection_call_sync(
            shared.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", nullptr,
            nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        EXPECT_TRUE(answer);
        iteratePending();
    }

    testing::PrivateBus bus_;
    GObjectPtr<GSubprocess> mock_;
    GObjectPtr<GDBusConnection> other_;
};

TEST_F(LogindWakeTest, TellsOfWakingButNotOfGoingToSleepNorWhatOthersSay)
{
    LogindWake wake;
    int first = 0, second = 0;
    auto firstObservation = wake.observeWake([&] { ++first; });
    const auto secondObservation = wake.observeWake([&] { ++second; });
    // It connects in the background: until it listens, signals pass by.
    ASSERT_TRUE(iterateUntil([&] { return first > 0 || (emit(false) && first > 0); }));
    settle();
    first = second = 0;

    emit(true);
    emit(true);
    g_dbus_connection_emit_signal(other_.get(), nullptr, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                  "PrepareForSleep", g_variant_new("(b)", FALSE), nullptr);
    settle();
    EXPECT_EQ(first, 0);
    emit(false);
    settle();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);

    firstObservation.end();
    emit(false);
    settle();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST_F(LogindWakeTest, SurvivesTheEndOfTheBus)
{
    LogindWake wake;
    int woken = 0;
    const auto observation = wake.observeWake([&] { ++woken; });
    ASSERT_TRUE(iterateUntil([&] { return woken > 0 || (emit(false) && woken > 0); }));
    const auto shared = adopt(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    ASSERT_TRUE(shared);
    bus_.end();
    EXPECT_TRUE(iterateUntil([&] { return g_dbus_connection_is_closed(shared.get()) != FALSE; }));
    iteratePending();
}

TEST(LogindWakeWithoutABusTest, IsQuiet)
{
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    int woken = 0;
    {
        const LogindWake endsWhileItConnects;
    }
    LogindWake wake;
    const auto observation = wake.observeWake([&] { ++woken; });
    bool hasFailed = false;
    g_bus_get(
        G_BUS_TYPE_SYSTEM, nullptr,
        [](GObject*, GAsyncResult* result, gpointer failed) {
            *static_cast<bool*>(failed) = adopt(g_bus_get_finish(result, nullptr)) == nullptr;
        },
        &hasFailed);
    EXPECT_TRUE(iterateUntil([&] { return hasFailed; }));
    iteratePending();
    EXPECT_EQ(woken, 0);
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

} // namespace
} // namespace corvane
