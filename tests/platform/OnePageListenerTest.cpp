#include "platform/OnePageListener.h"

#include "platform/RawClient.h"
#include "support/MainContext.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;
using testing::iteratePending;
using testing::iterateUntil;
using testing::RawClient;
using Limits = OnePageListener::Limits;

constexpr auto never = std::chrono::milliseconds(1h);

/// As long as this lives, the process can open nothing further.
class NoFurtherDescriptors {
public:
    NoFurtherDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int next = ::dup(0);
        ::close(next);
        const rlimit none{.rlim_cur = static_cast<rlim_t>(next), .rlim_max = before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    NoFurtherDescriptors(const NoFurtherDescriptors&) = delete;
    NoFurtherDescriptors& operator=(const NoFurtherDescriptors&) = delete;
    ~NoFurtherDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

/// The listener runs in the loop of the test, so that nothing happens but in the turns that the test takes.
class OnePageListenerTest : public ::testing::Test {
protected:
    ~OnePageListenerTest() override
    {
        listener.reset();
        iteratePending();
    }

    void listen(Limits limits)
    {
        listener = std::make_unique<OnePageListener>("the page", limits);
        const auto bound = listener->listen("127.0.0.1");
        ASSERT_TRUE(bound);
        port = *bound;
    }

    RawClient asking(std::string_view request = "GET / HTTP/1.1\r\n\r\n")
    {
        RawClient client(port);
        EXPECT_TRUE(client.send(request));
        return client;
    }

    [[nodiscard]] static bool isAnswered(RawClient& client)
    {
        const bool isOver = iterateUntil([&] { return client.isOver(); });
        return isOver && client.received == "the page" && !client.wasReset;
    }

    std::unique_ptr<OnePageListener> listener;
    std::uint16_t port = 0;
};

TEST_F(OnePageListenerTest, LetsClientsWaitWhileItHasAsManyAsItTakes)
{
    listen({.connections = 2, .life = never});
    std::vector<RawClient> silent;
    silent.emplace_back(port);
    silent.emplace_back(port);
    auto third = asking();
    auto fourth = asking();
    iteratePending();
    EXPECT_FALSE(third.isOver());
    EXPECT_EQ(third.received, "");

    silent.pop_back();
    EXPECT_TRUE(isAnswered(third));
    {
        const auto gone = std::move(third);
    }
    EXPECT_TRUE(isAnswered(fourth));
}

TEST_F(OnePageListenerTest, HangsUpOnASilentClientWithoutAnAnswer)
{
    listen({.connections = 1, .life = 20ms});
    RawClient silent(port);
    auto next = asking();
    EXPECT_TRUE(isAnswered(next));
    EXPECT_TRUE(silent.isOver());
    EXPECT_EQ(silent.received, "");
}

TEST_F(OnePageListenerTest, GivesUpAClientThatDoesNotLeaveAfterItsAnswer)
{
    const std::vector<Limits> cases{
        {.connections = 1, .life = never, .drain = 10ms},
        {.connections = 1, .life = 10ms, .drain = never},
        {.connections = 1, .life = never, .drain = never, .drainedBytes = 4096},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        listen(cases[i]);
        auto staying = asking(std::string(16384, 'x'));
        auto next = asking();
        EXPECT_TRUE(isAnswered(next)) << i;
        EXPECT_EQ(staying.answer(), "the page") << i;
    }
}

TEST_F(OnePageListenerTest, OutlivesClientsThatBreakOff)
{
    listen({.connections = 1, .life = never, .drain = never});
    RawClient(port).reset();
    asking().reset();
    {
        const RawClient wordless(port);
    }
    auto next = asking();
    EXPECT_TRUE(isAnswered(next));
}

TEST_F(OnePageListenerTest, RestsWhileDescriptorsAreShort)
{
    listen({.pause = never});
    auto waiting = asking();
    {
        const NoFurtherDescriptors shortage;
        iteratePending();
        EXPECT_FALSE(g_main_context_pending(nullptr)) << "tries again and again";
    }
    iteratePending();
    EXPECT_FALSE(waiting.isOver());
    EXPECT_EQ(waiting.received, "");
}

TEST_F(OnePageListenerTest, GoesOnWhenThereAreDescriptorsAgain)
{
    listen({.pause = 5ms});
    auto waiting = asking();
    {
        const NoFurtherDescriptors shortage;
        iteratePending();
    }
    EXPECT_TRUE(isAnswered(waiting));
}

} // namespace
} // namespace corvane
