// Ten thousand clients, good and bad, against the page server, or as many as CORVANE_LOOPBACK_CONNECTIONS says.

#include "platform/AnalyticsLocalHTTPServer.h"
#include "platform/RawClient.h"
#include "support/MainContext.h"
#include "support/ProcessMeasures.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::RawClient;

/// A kind of client: what it sends, whether byte by byte, and what it does then.
struct Kind {
    const char* name;
    std::string sent;
    enum class Then { listen, finishAndListen, close, reset } then = Then::listen;
    bool isInSingleBytes = false;
    bool isTooLong = false; // the server hangs up on it amid what it sends

    bool listens() const { return then == Then::listen || then == Then::finishAndListen; }
};

const std::array<Kind, 11>& kinds()
{
    using Then = Kind::Then;
    static const std::string get = "GET /analytics.html HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
    static const std::array<Kind, 11> all{{
        {"asks", get},
        {"asks byte by byte", get, Then::listen, true},
        {"sends one byte", "G"},
        {"ends amid its request", get.substr(0, 20), Then::finishAndListen},
        {"sends 60 KB of headers", get + std::string(60'000, 'h')},
        {"sends 100 KB of headers", get + std::string(100'000, 'h'), Then::listen, false, true},
        {"posts a form", "POST /a HTTP/1.1\r\nContent-Length: 7\r\n\r\na=b&c=d"},
        {"asks twice", get + get},
        {"sends what is no request", std::string("\x16\x03\x01\0\xFF\r\n\r\r", 9)},
        {"leaves at once", "", Then::close},
        {"breaks off", get, Then::reset},
    }};
    return all;
}

class LoopbackTrafficTest : public ::testing::Test {
protected:
    static constexpr std::size_t atOnce = 48; // more than the server takes at a time

    static std::size_t connections()
    {
        const char* wanted = std::getenv("CORVANE_LOOPBACK_CONNECTIONS");
        return wanted == nullptr ? 10'000 : std::stoul(wanted);
    }

    std::uint16_t start()
    {
        std::optional<std::string> address;
        server.startServer(page, [&](const auto& outcome) { address = outcome ? outcome->text() : "none"; });
        EXPECT_TRUE(testing::iterateUntil([&] { return address.has_value(); }));
        return static_cast<std::uint16_t>(std::stoul(address->substr(address->rfind(':') + 1)));
    }

    /// Sends what a client of this kind sends. One that does not listen has gone when this returns.
    static void act(const Kind& kind, RawClient& client)
    {
        const auto step = kind.isInSingleBytes ? 1 : kind.sent.size();
        bool isTaken = true;
        for (std::size_t sent = 0; sent < kind.sent.size() && isTaken; sent += step)
            isTaken = client.send(std::string_view(kind.sent).substr(sent, step));
        EXPECT_TRUE(isTaken || kind.isTooLong) << kind.name;
        if (kind.then == Kind::Then::finishAndListen)
            client.finishSending();
        else if (kind.then == Kind::Then::reset)
            client.reset();
    }

    /// One client after another connects and acts; then those that listen are answered in the same order.
    void takeWave(std::uint16_t port, std::size_t size)
    {
        std::deque<std::pair<const Kind*, RawClient>> listening;
        for (std::size_t i = 0; i < size; ++i) {
            const auto& kind = kinds()[random() % kinds().size()];
            RawClient client(port);
            ASSERT_TRUE(client.isConnected()) << kind.name;
            act(kind, client);
            if (kind.listens())
                listening.emplace_back(&kind, std::move(client));
        }
        for (; !listening.empty(); listening.pop_front()) {
            auto& [kind, client] = listening.front();
            EXPECT_EQ(client.answer(), answer) << kind->name;
            EXPECT_TRUE(!client.wasReset || kind->isTooLong) << kind->name;
            ++answered[kind->name];
        }
    }

    /// Waits until the server, too, is done with its clients.
    template <typename Condition>
    static bool comesTrue(Condition condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition() && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        return condition();
    }

    const std::string page = "<!doctype html><title>\u00fc</title>" + std::string(5'000, 'x');
    const std::string answer =
        fmt::format("HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n"
                    "Content-Length: {}\r\nConnection: close\r\nCache-Control: no-store\r\n\r\n{}",
                    page.size(), page);
    AnalyticsLocalHTTPServer server;
    static constexpr auto threadName = "analytics-http";
    static constexpr unsigned seed = 2026;
    std::mt19937 random{seed}; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same clients every time
    std::map<std::string, std::size_t> answered;
};

TEST_F(LoopbackTrafficTest, EveryClientThatSendsAndListensIsAnsweredAndNothingIsLeftOfAny)
{
    SCOPED_TRACE(fmt::format("seed {}", seed));
    const auto port = start();
    takeWave(port, atOnce); // whatever is made once is there now
    const auto threads = testing::runningThreads();
    const auto idle = testing::openDescriptors();
    EXPECT_EQ(testing::runningThreads(threadName), 1U);

    for (std::size_t left = connections(); left > 0 && !HasFailure();) {
        const auto size = std::min(left, atOnce);
        takeWave(port, size);
        left -= size;
    }
    for (const auto& kind : kinds())
        EXPECT_EQ(answered[kind.name] > 0, kind.listens()) << kind.name;
    EXPECT_LE(testing::runningThreads(), threads);
    EXPECT_TRUE(comesTrue([&] { return testing::openDescriptors() <= idle; })) << testing::openDescriptors();

    server.stopServer();
    EXPECT_TRUE(comesTrue([&] { return testing::runningThreads(threadName) == 0; }));
    EXPECT_LT(testing::openDescriptors(), idle) << "the server's own are closed, too";
}

} // namespace
} // namespace corvane
