#include "platform/SoupHttpClient.h"

#include "platform/GzipOfZeros.h"
#include "platform/RawServer.h"
#include "platform/SelfSignedCertificate.h"
#include "support/MainContext.h"

#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;
using testing::gzipOfZeros;
using testing::iteratePending;
using testing::iterateUntil;
using testing::RawServer;
using Reply = RawServer::Reply;
using Answer = Result<HttpResponse>;

Task<void> ask(HttpClient* client, HttpRequest request, std::optional<Answer>* answer)
{
    *answer = co_await client->send(std::move(request));
}

class SoupHttpClientTest : public ::testing::Test {
protected:
    /// The answer to one request, waited for to its end.
    Answer fetch(HttpClient& client, HttpRequest request)
    {
        std::optional<Answer> answer;
        TaskScope scope;
        scope.start(ask(&client, std::move(request), &answer));
        EXPECT_TRUE(iterateUntil([&] { return answer.has_value(); }));
        return answer.value_or(std::unexpected(Error{"no answer at all"}));
    }

    static std::string failureOf(const Answer& answer) { return answer ? "" : answer.error().message; }

    RawServer server_;
    SoupHttpClient client_{"9.8.7"};
};

constexpr auto tooLarge = "The answer of the server is too large.";
constexpr auto tooLate = "The server did not answer in time.";

TEST_F(SoupHttpClientTest, AsksAsWrittenAndRemembersNothing)
{
    server_.respond = [](const std::string&) {
        return RawServer::ok("hello", "Set-Cookie: a=b\r\nCache-Control: max-age=999\r\n");
    };
    for (int i = 0; i < 2; ++i) {
        const auto answer = fetch(client_, {.url = server_.url("/a%2Fb/%C3%A4?q=%2F"), .headers = {{"Accept", "x/y"}}});
        ASSERT_TRUE(answer) << answer.error().message;
        EXPECT_EQ(answer->status, 200);
        EXPECT_EQ(answer->body, "hello");
    }
    ASSERT_EQ(server_.requests.size(), 2U) << "nothing comes from a cache";
    for (const auto& request : server_.requests) {
        EXPECT_TRUE(request.starts_with("GET /a%2Fb/%C3%A4?q=%2F HTTP/1.1\r\n")) << request;
        EXPECT_TRUE(request.contains("\r\nUser-Agent: Corvane/9.8.7\r\n")) << request;
        EXPECT_TRUE(request.contains("\r\nAccept: x/y\r\n")) << request;
        EXPECT_FALSE(request.contains("Cookie")) << request;
    }
}

TEST_F(SoupHttpClientTest, PostsWithAndWithoutABodyAndTakesErrorPagesForAnswers)
{
    server_.respond = [](const std::string&) {
        return Reply{"HTTP/1.1 503 No\r\nContent-Length: 4\r\n\r\nbusy", Reply::Then::wait};
    };
    const auto posted = fetch(client_, {.url = server_.url("/p"),
                                        .method = HttpMethod::post,
                                        .headers = {{"Content-Type", "application/json"}},
                                        .body = std::string("{\"a\":\0}", 7)});
    ASSERT_TRUE(posted);
    EXPECT_EQ(posted->status, 503);
    EXPECT_EQ(posted->body, "busy");
    ASSERT_TRUE(fetch(
        client_, {.url = server_.url("/e"), .method = HttpMethod::post, .headers = {{"Content-Type", "text/plain"}}}));
    ASSERT_EQ(server_.requests.size(), 2U);
    EXPECT_TRUE(server_.requests[0].starts_with("POST /p ")) << server_.requests[0];
    EXPECT_TRUE(server_.requests[0].contains("\r\nContent-Type: application/json\r\n"));
    EXPECT_TRUE(server_.requests[0].ends_with(std::string("\r\n\r\n{\"a\":\0}", 11)));
    EXPECT_TRUE(server_.requests[1].contains("\r\nContent-Type: text/plain\r\n")) << server_.requests[1];
    EXPECT_TRUE(server_.requests[1].contains("\r\nContent-Length: 0\r\n")) << server_.requests[1];
}

TEST_F(SoupHttpClientTest, FailsPastTheLimitOfTheBodyAndHangsUp)
{
    SoupHttpClient client("1", {.jsonBody = 40'000, .pageBody = 50'000});
    server_.respond = [](const std::string& request) {
        const auto size = std::stoul(request.substr(request.find("?") + 1));
        if (request.contains("/chunked"))
            return Reply{fmt::format("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n{:x}\r\n{}\r\n", size,
                                     std::string(size, 'x')),
                         Reply::Then::wait}; // the end never comes
        return RawServer::ok(std::string(size, 'x'));
    };
    EXPECT_EQ(fetch(client, {.url = server_.url("/?40000")}).value_or(HttpResponse{}).body.size(), 40'000U);
    EXPECT_EQ(failureOf(fetch(client, {.url = server_.url("/?40001")})), tooLarge);
    EXPECT_TRUE(fetch(client, {.url = server_.url("/?50000"), .limit = BodyLimit::page}));
    EXPECT_EQ(failureOf(fetch(client, {.url = server_.url("/?50001"), .limit = BodyLimit::page})), tooLarge);
    const auto before = server_.hangUps;
    EXPECT_EQ(failureOf(fetch(client, {.url = server_.url("/chunked?3000000")})), tooLarge);
    EXPECT_TRUE(iterateUntil([&] { return server_.hangUps > before; }));
}

TEST_F(SoupHttpClientTest, DecodesGzipButNotABomb)
{
    const std::string gzip = "Content-Encoding: gzip\r\n";
    const auto small = gzipOfZeros(1U << 20U);
    const auto bomb = gzipOfZeros(std::size_t{256} << 20U);
    server_.respond = [&](const std::string& request) {
        return RawServer::ok(request.contains("/bomb") ? bomb : small, gzip);
    };
    EXPECT_EQ(fetch(client_, {.url = server_.url("/")}).value_or(HttpResponse{}).body, std::string(1U << 20U, '\0'));

    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    EXPECT_EQ(failureOf(fetch(client_, {.url = server_.url("/bomb")})), tooLarge);
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 << 10) << "KiB";
}

TEST_F(SoupHttpClientTest, GivesUpOnSilenceAndOnSlowness)
{
    const HttpLimits quick{.total = 40ms};
    const HttpLimits impatient{.silence = 1s, .total = 1h};
    const std::vector<Reply> stalls{
        {"", Reply::Then::wait},
        {"HTTP/1.1 200 OK\r\nContent-Le", Reply::Then::wait},
        {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Reply::Then::wait},
    };
    SoupHttpClient hurried("1", quick);
    for (const auto& stall : stalls) {
        server_.respond = [&](const std::string&) { return stall; };
        EXPECT_EQ(failureOf(fetch(hurried, {.url = server_.url("/")})), tooLate) << stall.bytes;
    }
    SoupHttpClient listening("1", impatient);
    EXPECT_EQ(failureOf(fetch(listening, {.url = server_.url("/")})), tooLate);
}

TEST_F(SoupHttpClientTest, FailsOnAnswersThatBreakTheProtocol)
{
    for (const auto* bytes : {"", "garbage\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf",
                              "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nhalf"}) {
        server_.respond = [bytes](const std::string&) { return Reply{bytes}; };
        const auto answer = fetch(client_, {.url = server_.url("/")});
        EXPECT_FALSE(failureOf(answer).empty()) << bytes;
    }
}

TEST_F(SoupHttpClientTest, FollowsRedirectsToTheEndAndALoopOnlySoFar)
{
    server_.respond = [](const std::string& request) {
        if (request.starts_with("POST /start "))
            return RawServer::redirect(303, "/a%2Fb?x");
        if (request.starts_with("GET /a%2Fb?x "))
            return Reply{"HTTP/1.1 302 F\r\nLocation: end\r\nContent-Length: 900000\r\n\r\nendless", Reply::Then::wait};
        return request.starts_with("GET /loop ") ? RawServer::redirect(301, "/loop") : RawServer::ok("the end");
    };
    const auto answer = fetch(client_, {.url = server_.url("/start"), .method = HttpMethod::post, .body = "b"});
    ASSERT_TRUE(answer) << answer.error().message;
    EXPECT_EQ(answer->body, "the end");

    server_.requests.clear();
    EXPECT_EQ(failureOf(fetch(client_, {.url = server_.url("/loop")})), "The server redirects too often.");
    EXPECT_EQ(server_.requests.size(), 21U);
}

TEST_F(SoupHttpClientTest, FetchesNothingButHttp)
{
    for (const auto* address : {"file:///etc/passwd", "ftp://127.0.0.1/", "data:,x", "javascript:1", "mailto:a@b.c",
                                "resource:///org", "ws://127.0.0.1/"}) {
        const auto answer = fetch(client_, {.url = *Url::parse(address)});
        EXPECT_EQ(failureOf(answer), "Only http and https addresses can be fetched.") << address;
    }
    for (const auto& header :
         std::vector<std::pair<std::string, std::string>>{{"A", "b\r\nC: d"}, {"A\n", "b"}, {"", "b"}})
        EXPECT_FALSE(fetch(client_, {.url = server_.url("/"), .headers = {header}})) << header.first;
    EXPECT_TRUE(server_.requests.empty());
}

TEST_F(SoupHttpClientTest, FailsOnACertificateThatNobodyVouchesFor)
{
    const auto certificate = adopt(g_tls_certificate_new_from_pem(testing::selfSignedCertificate, -1, nullptr));
    const auto server =
        adopt(SOUP_SERVER(g_object_new(SOUP_TYPE_SERVER, "tls-certificate", certificate.get(), nullptr)));
    int asked = 0;
    soup_server_add_handler(
        server.get(), nullptr,
        [](SoupServer*, SoupServerMessage*, const char*, GHashTable*, gpointer count) { ++*static_cast<int*>(count); },
        &asked, nullptr);
    const auto options = static_cast<SoupServerListenOptions>(SOUP_SERVER_LISTEN_HTTPS | SOUP_SERVER_LISTEN_IPV4_ONLY);
    ASSERT_TRUE(soup_server_listen_local(server.get(), 0, options, nullptr));
    auto* addresses = soup_server_get_uris(server.get());
    const auto address = adopt(g_uri_to_string(static_cast<GUri*>(addresses->data)));
    g_slist_free_full(addresses, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });

    const auto answer = fetch(client_, {.url = *Url::parse(address.get())});
    EXPECT_TRUE(failureOf(answer).contains("certificate")) << failureOf(answer);
    EXPECT_EQ(asked, 0);
}

TEST_F(SoupHttpClientTest, CancellingHangsUpAtEveryStage)
{
    const std::vector<std::string> stages{"", "HTTP/1.1 200 OK\r\n",
                                          "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf"};
    for (const auto& sent : stages) {
        server_.respond = [&](const std::string&) { return Reply{sent, Reply::Then::wait}; };
        server_.requests.clear();
        server_.hangUps = 0;
        std::optional<Answer> answer;
        TaskScope scope;
        scope.start(ask(&client_, {.url = server_.url("/")}, &answer));
        ASSERT_TRUE(iterateUntil([&] { return !server_.requests.empty(); }));
        iteratePending(); // what has been sent so far has arrived
        scope.cancel();
        EXPECT_TRUE(iterateUntil([&] { return server_.hangUps == 1; })) << sent;
        EXPECT_FALSE(answer) << sent;
    }

    server_.requests.clear();
    std::optional<Answer> answer;
    {
        TaskScope scope;
        const auto neverStarted = client_.send({.url = server_.url("/never")});
        scope.start(ask(&client_, {.url = server_.url("/at-once")}, &answer));
    }
    iteratePending();
    EXPECT_FALSE(answer);
}

Task<void> askAndCancel(HttpClient* client, HttpRequest request, std::vector<TaskScope>* scopes, std::size_t own,
                        int* done)
{
    const auto answer = co_await client->send(std::move(request));
    *done += answer ? 1 : 100;
    for (std::size_t i = 0; i < scopes->size(); ++i) {
        if (i != own)
            (*scopes)[i].cancel();
    }
}

TEST_F(SoupHttpClientTest, OneAnswersTurnMayCancelRequestsWhoseAnswersAreThereToo)
{
    server_.respond = [](const std::string&) { return RawServer::ok("x"); };
    for (int round = 0; round < 20; ++round) {
        int done = 0;
        std::vector<TaskScope> scopes(5);
        for (std::size_t i = 0; i < scopes.size(); ++i)
            scopes[i].start(askAndCancel(&client_, {.url = server_.url("/")}, &scopes, i, &done));
        ASSERT_TRUE(iterateUntil([&] { return done > 0; }));
        iteratePending();
        EXPECT_EQ(done, 1);
    }
}

TEST_F(SoupHttpClientTest, TasksThatOutliveTheClientFail)
{
    server_.respond = [](const std::string&) { return Reply{"HTTP/1.1 200 OK\r\n", Reply::Then::wait}; };
    std::optional<Answer> answer;
    TaskScope scope;
    {
        SoupHttpClient brief("1");
        scope.start(ask(&brief, {.url = server_.url("/")}, &answer));
        ASSERT_TRUE(iterateUntil([&] { return !server_.requests.empty(); }));
    }
    ASSERT_TRUE(iterateUntil([&] { return answer.has_value(); }));
    EXPECT_FALSE(*answer);
}

} // namespace
} // namespace corvane
