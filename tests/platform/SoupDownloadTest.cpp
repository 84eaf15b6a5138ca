#include "platform/GzipOfZeros.h"
#include "platform/RawServer.h"
#include "platform/SoupHttpClient.h"
#include "support/MainContext.h"
#include "support/RunTask.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;
using testing::iterateUntil;
using testing::keepResult;
using testing::RawServer;
using Reply = RawServer::Reply;

constexpr auto tooLarge = "The answer of the server is too large.";

class CollectingSink final : public ByteSink {
public:
    Result<void> write(std::string_view piece) override
    {
        largestPiece = std::max(largestPiece, piece.size());
        if (bytes.size() + piece.size() > room)
            return std::unexpected(Error{"full"});
        bytes += piece;
        return {};
    }

    std::string bytes;
    std::size_t room = std::size_t{1} << 30U;
    std::size_t largestPiece = 0;
};

class SoupDownloadTest : public ::testing::Test {
protected:
    /// The status of a download that is waited for to its end, or why it failed.
    std::string download(HttpClient& client, std::string_view path, DownloadObserver observer = {})
    {
        sink_.bytes.clear();
        std::optional<Result<int>> status;
        TaskScope scope;
        scope.start(keepResult(client.download(server_.url(path), &sink_, std::move(observer)), &status));
        EXPECT_TRUE(iterateUntil([&] { return status.has_value(); }));
        return *status ? std::to_string(**status) : status->error().message;
    }

    CollectingSink sink_;
    RawServer server_;
    SoupHttpClient client_{"1", {.total = 0ms, .download = 3'000'000}};
};

TEST_F(SoupDownloadTest, StreamsInSmallPiecesTellsProgressAndMayTakeItsTime)
{
    const std::string body(3'000'000, 'x');
    server_.respond = [&](const std::string& request) {
        return request.contains("/start") ? RawServer::redirect(302, "/image") : RawServer::ok(body);
    };
    std::vector<DownloadProgress> told;
    const auto status =
        download(client_, "/start", [&](const DownloadProgress& progress) { told.push_back(progress); });
    EXPECT_EQ(status, "200") << "the limit on the time in all, here none at all, is for documents";
    EXPECT_TRUE(sink_.bytes == body);
    EXPECT_LE(sink_.largestPiece, 65536U);
    ASSERT_GT(told.size(), 40U);
    EXPECT_TRUE(std::ranges::is_sorted(told, {}, &DownloadProgress::received));
    EXPECT_EQ(told.back().received, body.size());
    EXPECT_EQ(told.front().total, body.size());
    EXPECT_TRUE(server_.requests.back().starts_with("GET /image HTTP/1.1\r\n"));
}

TEST_F(SoupDownloadTest, DecodesABodyAndThenKnowsNoTotal)
{
    const auto gzip = testing::gzipOfZeros(std::size_t{1} << 20U);
    server_.respond = [&](const std::string& request) {
        return request.contains(" /gzip ") ? RawServer::ok(gzip, "Content-Encoding: gzip\r\n")
                                           : Reply{"HTTP/1.1 200 OK\r\n\r\nuntil the end"};
    };
    std::optional<std::uint64_t> total = 1;
    const auto observer = [&](const DownloadProgress& progress) { total = progress.total; };
    EXPECT_EQ(download(client_, "/gzip", observer), "200");
    EXPECT_TRUE(sink_.bytes == std::string(std::size_t{1} << 20U, '\0'));
    EXPECT_FALSE(total);
    total = 1;
    EXPECT_EQ(download(client_, "/open", observer), "200");
    EXPECT_TRUE(sink_.bytes == "until the end");
    EXPECT_FALSE(total);
}

TEST_F(SoupDownloadTest, WritesNothingOfAnAnswerThatIsNoSuccess)
{
    for (const int status : {300, 304, 404, 503}) {
        server_.respond = [status](const std::string&) {
            return Reply{fmt::format("HTTP/1.1 {} X\r\nContent-Length: 900\r\n\r\nendless", status), Reply::Then::wait};
        };
        EXPECT_EQ(download(client_, "/"), std::to_string(status));
        EXPECT_TRUE(sink_.bytes.empty());
    }
    EXPECT_TRUE(iterateUntil([&] { return server_.hangUps >= 3; })) << "nobody waits for their bodies";
}

TEST_F(SoupDownloadTest, FailsPastItsLimitAtOnceWhereThatIsAnnounced)
{
    server_.respond = [](const std::string& request) {
        if (request.contains("/announced"))
            return Reply{"HTTP/1.1 200 OK\r\nContent-Length: 3000001\r\n\r\nfirst", Reply::Then::wait};
        return Reply{fmt::format("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n{:x}\r\n{}\r\n", 3'000'001,
                                 std::string(3'000'001, 'x')),
                     Reply::Then::wait};
    };
    EXPECT_EQ(download(client_, "/announced"), tooLarge);
    EXPECT_TRUE(sink_.bytes.empty());
    EXPECT_EQ(download(client_, "/chunked"), tooLarge);
    EXPECT_LE(sink_.bytes.size(), 3'000'000U);
}

TEST_F(SoupDownloadTest, EndsWithItsSinkAndWithItsTask)
{
    server_.respond = [](const std::string&) {
        return Reply{"HTTP/1.1 200 OK\r\nContent-Length: 999999\r\n\r\n" + std::string(100'000, 'x'),
                     Reply::Then::wait};
    };
    sink_.room = 50'000;
    EXPECT_EQ(download(client_, "/"), "full");
    EXPECT_TRUE(iterateUntil([&] { return server_.hangUps == 1; }));

    sink_.room = 1'000'000;
    sink_.bytes.clear();
    std::optional<Result<int>> status;
    TaskScope scope;
    scope.start(keepResult(client_.download(server_.url("/"), &sink_, nullptr), &status));
    ASSERT_TRUE(iterateUntil([&] { return sink_.bytes.size() == 100'000; }));
    scope.cancel();
    EXPECT_TRUE(iterateUntil([&] { return server_.hangUps == 2; }));
    EXPECT_FALSE(status);
}

} // namespace
} // namespace corvane
