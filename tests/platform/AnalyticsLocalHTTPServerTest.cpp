#include "platform/AnalyticsLocalHTTPServer.h"

#include "platform/RawClient.h"
#include "support/MainContext.h"

#include <charconv>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::iteratePending;
using testing::iterateUntil;
using testing::RawClient;
using Outcome = std::expected<Url, LoopbackFailure>;

constexpr std::string_view request = "GET /analytics.html HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";

std::uint16_t portOf(const Url& address)
{
    const auto origin = address.origin();
    std::uint16_t port = 0;
    std::from_chars(origin.data() + origin.rfind(':') + 1, origin.data() + origin.size(), port);
    EXPECT_EQ(address.text(), "http://127.0.0.1:" + std::to_string(port) + "/analytics.html");
    return port;
}

class AnalyticsLocalHTTPServerTest : public ::testing::Test {
protected:
    /// The port of a server that has just started; 0 when it did not.
    static std::uint16_t start(LoopbackServer& starting, std::string html)
    {
        std::optional<Outcome> told;
        starting.startServer(std::move(html), [&](Outcome outcome) { told = std::move(outcome); });
        EXPECT_FALSE(told) << "told before the call was over";
        EXPECT_TRUE(iterateUntil([&] { return told.has_value(); }));
        return told && *told ? portOf(**told) : std::uint16_t{0};
    }

    static std::string ask(std::uint16_t port, std::string_view bytes = request)
    {
        RawClient client(port);
        EXPECT_TRUE(client.send(bytes));
        const auto answer = client.answer();
        EXPECT_FALSE(client.wasReset);
        return answer;
    }

    static std::string header(std::size_t length)
    {
        return "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
               std::to_string(length) + "\r\nConnection: close\r\nCache-Control: no-store\r\n\r\n";
    }

    AnalyticsLocalHTTPServer server;
};

TEST_F(AnalyticsLocalHTTPServerTest, AnswersWhateverIsAskedWithTheSameBytes)
{
    const std::string page = "<!doctype html><title>\u00fc</title>" + std::string(1, '\0');
    const auto port = start(server, page);
    const std::vector<std::string> requests{
        std::string(request),
        "HEAD / HTTP/1.0\r\n\r\n",
        "POST /g/collect?a=b HTTP/1.1\r\nContent-Length: 5\r\n\r\nhello",
        "OPTIONS * HTTP/1.1\r\n\r\n",
        "G",
        std::string("\0\r\n\xff", 4),
        "GET /" + std::string(20'000, 'a') + " HTTP/1.1\r\n\r\n",
        "PUT / HTTP/1.1\r\nContent-Length: 68000\r\n\r\n" + std::string(68'000, 'b'),
    };
    for (const auto& bytes : requests)
        EXPECT_EQ(ask(port, bytes), header(page.size()) + page) << bytes.substr(0, 20);

    RawClient wordless(port);
    wordless.finishSending();
    EXPECT_EQ(wordless.answer(), header(page.size()) + page);
}

TEST_F(AnalyticsLocalHTTPServerTest, ServesManyClientsAtOnce)
{
    const std::string page(3'000, 'x');
    const auto port = start(server, page);
    std::deque<RawClient> silent;
    for (int i = 0; i < 20; ++i)
        silent.emplace_back(port);
    std::deque<RawClient> clients;
    for (int i = 0; i < 100; ++i) {
        clients.emplace_back(port);
        EXPECT_TRUE(clients.back().send(request));
    }
    while (!clients.empty()) {
        EXPECT_EQ(clients.front().answer(), header(page.size()) + page);
        clients.pop_front();
    }
}

TEST_F(AnalyticsLocalHTTPServerTest, OutlivesClientsThatBreakOffAmidALargeAnswer)
{
    const std::string page(8'000'000, 'x');
    const auto port = start(server, page);
    for (int i = 0; i < 10; ++i) {
        RawClient client(port);
        EXPECT_TRUE(client.send(request));
        client.reset();
    }
    EXPECT_TRUE(ask(port) == header(page.size()) + page);
}

TEST_F(AnalyticsLocalHTTPServerTest, SharesItsPortWithNobody)
{
    const auto port = start(server, "page");
    const int other = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ASSERT_EQ(::setsockopt(other, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on), 0);
    ASSERT_EQ(::setsockopt(other, SOL_SOCKET, SO_REUSEPORT, &on, sizeof on), 0);
    const auto address = RawClient::loopback(port);
    EXPECT_NE(::bind(other, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(errno, EADDRINUSE);
    ::close(other);
}

TEST_F(AnalyticsLocalHTTPServerTest, TellsItsAddressOnceAndOnlyWhileThatIsWanted)
{
    std::vector<std::string> told;
    const auto note = [&](const std::string& name) { return [&told, name](const Outcome&) { told.push_back(name); }; };
    server.startServer("a", note("stopped"));
    server.stopServer();
    {
        AnalyticsLocalHTTPServer gone;
        gone.startServer("b", note("gone"));
    }
    server.startServer("c", note("replaced"));
    server.startServer("d", note("served"));
    auto selfEnding = std::make_unique<AnalyticsLocalHTTPServer>();
    selfEnding->startServer("e", [&](const Outcome&) {
        selfEnding.reset();
        server.startServer("f", note("restarted"));
    });
    ASSERT_TRUE(iterateUntil([&] { return !told.empty() && told.back() == "restarted"; }));
    iteratePending();
    if (told.front() == "served") // unless the restart came first
        told.erase(told.begin());
    EXPECT_EQ(told, std::vector<std::string>{"restarted"});
}

TEST_F(AnalyticsLocalHTTPServerTest, StopsAmidTraffic)
{
    for (int round = 0; round < 10; ++round) {
        const auto port = start(server, std::string(100'000, 'x'));
        ASSERT_NE(port, 0);
        std::vector<RawClient> clients;
        for (int i = 0; i < 40; ++i) {
            clients.emplace_back(port);
            if (i % 4 != 0)
                clients.back().send(request);
        }
        server.stopServer();
        for (auto& client : clients)
            EXPECT_TRUE((header(100'000) + std::string(100'000, 'x')).starts_with(client.answer()));
        EXPECT_FALSE(RawClient(port).isConnected());
    }
    EXPECT_EQ(ask(start(server, "again")), header(5) + "again");
}

TEST_F(AnalyticsLocalHTTPServerTest, TellsWhyItCannotServe)
{
    for (const std::string address : {"203.0.113.9", "nowhere"}) {
        AnalyticsLocalHTTPServer elsewhere(address); // the first belongs to no machine, the second is no address
        std::optional<Outcome> told;
        elsewhere.startServer("page", [&](Outcome outcome) { told = std::move(outcome); });
        ASSERT_TRUE(iterateUntil([&] { return told.has_value(); }));
        ASSERT_FALSE(*told) << address;
        EXPECT_EQ(told->error().domain, "g-io-error-quark");
        EXPECT_NE(told->error().description, "");
    }
    const auto nowhere = AnalyticsLocalHTTPServer::pageAddress(0);
    ASSERT_FALSE(nowhere);
    EXPECT_EQ(nowhere.error().domain, "AnalyticsLocalHTTPServer");
    EXPECT_EQ(nowhere.error().code, 2);
    EXPECT_EQ(nowhere.error().description, "Invalid listener port");
}

} // namespace
} // namespace corvane
