#include "network/FetchingProgram.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::Fault;
using testing::FaultyServer;
using testing::Fetch;
using testing::FetchingProgram;
using testing::iterateUntil;
using testing::keepResult;

/// Limits that a test reaches at once, but for those of time.
constexpr HttpLimits tightLimits{.silence = 9s, .total = 9s, .jsonBody = 4096, .pageBody = 8192, .download = 65536};
constexpr HttpLimits hurriedLimits{.silence = 1s, .total = 60ms, .jsonBody = 4096, .pageBody = 8192, .download = 65536};

class HostileNetworkTest : public ::testing::TestWithParam<Fetch> {
protected:
    HostileNetworkTest() { publish(server, GetParam()); }

    std::string outcomeOf(const Fault& fault)
    {
        server.goWrong(GetParam().path, fault);
        return run(fault.lasts == Fault::Lasts::briefly ? program : hurried);
    }

    std::string healedOutcome()
    {
        server.heal();
        return run(program);
    }

    FaultyServer server;
    FetchingProgram program{server.base(), tightLimits};
    FetchingProgram hurried{server.base(), hurriedLimits};

private:
    static std::string run(FetchingProgram& fetching) { return (fetching.*GetParam().run)(); }
};

TEST_P(HostileNetworkTest, ComesToWhatWhatArrivesComesToAndGoesOn)
{
    ASSERT_EQ(healedOutcome(), GetParam().outcomes.document);
    for (const auto& fault : testing::allFaults()) {
        if (fault.lasts == Fault::Lasts::forever && !GetParam().hasTimeLimit)
            continue; // a download may take as long as it likes, and its user may cancel it
        EXPECT_EQ(outcomeOf(fault), GetParam().expected(fault)) << fault.name;
        EXPECT_EQ(healedOutcome(), GetParam().outcomes.document) << "after: " << fault.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Fetches, HostileNetworkTest, ::testing::ValuesIn(testing::allFetches()),
                         [](const auto& instance) { return instance.param.name; });

std::string content(const fs::path& file)
{
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator(input), {}};
}

constexpr auto imagePath = "/C.dmg";

class HostileDownloadTest : public ::testing::Test {
protected:
    HostileDownloadTest()
    {
        server.documents = {{imagePath, "image"}};
        fs::create_directory(*places.downloads);
        std::ofstream(older) << "old";
    }

    DMGDownloadHelper::Result download(std::optional<std::string> sha256 = {})
    {
        return resultOf(helper.download(server.url(imagePath), std::move(sha256), nullptr));
    }

    void expectNothingChanged(const std::string& after)
    {
        EXPECT_EQ(content(older), "old") << after;
        EXPECT_EQ(std::distance(fs::directory_iterator(*places.downloads), {}), 1) << after;
        EXPECT_FALSE(fs::exists(places.updates())) << after;
    }

    template <typename T>
    static T resultOf(Task<T> task)
    {
        std::optional<T> result;
        TaskScope scope;
        scope.start(keepResult(std::move(task), &result));
        EXPECT_TRUE(iterateUntil([&] { return result.has_value(); }));
        return *std::move(result);
    }

    FaultyServer server;
    SoupHttpClient http{"1"};
    SystemClock clock;
    testing::TemporaryFolder folder;
    const Places places{.data = folder / "data", .downloads = folder / "Downloads"};
    const fs::path older = *places.downloads / "C.dmg";
    PosixFileStore files;
    PosixIncomingFiles incoming;
    testing::RecordingDesktop desktop;
    DMGDownloadHelper helper{http, files, incoming, desktop, clock, places};
};

TEST_F(HostileDownloadTest, AnImageThatIsNotTheAnnouncedOneLeavesNothing)
{
    for (const auto& digest : {std::string(64, '0'), std::string()}) {
        const auto result = download(digest);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().message, "The downloaded file is not the one that was announced.");
        expectNothingChanged("wrong digest");
    }
}

TEST_F(HostileDownloadTest, ADownloadThatIsCancelledLeavesNothing)
{
    const auto fileCount = [this] { return std::distance(fs::directory_iterator(*places.downloads), {}); };
    server.documents.erase(imagePath);
    const Fault stalls{.name = "stalls", .reply = [](const std::string&, const std::string&) {
                           return testing::RawServer::Reply{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf",
                                                            testing::RawServer::Reply::Then::wait};
                       }};
    server.goWrong(imagePath, stalls);
    std::optional<DMGDownloadHelper::Result> result;
    TaskScope scope;
    scope.start(keepResult(helper.download(server.url(imagePath), std::nullopt, nullptr), &result));
    ASSERT_TRUE(iterateUntil([&] { return fileCount() == 2; })) << "the first bytes have arrived";
    scope.cancel();
    expectNothingChanged("cancelled");
    EXPECT_TRUE(iterateUntil([&] { return server.raw().hangUps == 1; }));
    EXPECT_FALSE(result);
}

TEST_F(HostileDownloadTest, AGoodDownloadReplacesAFileNeverAFolderAndFindsAnotherPlace)
{
    // The digest of "image".
    EXPECT_EQ(download("6105D6CC76AF400325E94D588CE511BE5BFDBB73B437DC51ECA43917D7A43E3D"), older);
    EXPECT_EQ(content(older), "image");

    fs::remove(older);
    fs::create_directory(older);
    EXPECT_FALSE(download());
    EXPECT_TRUE(fs::is_directory(older));
    EXPECT_EQ(std::distance(fs::directory_iterator(*places.downloads), {}), 1);

    fs::remove_all(*places.downloads);
    std::ofstream(*places.downloads) << "a file where the folder should be";
    EXPECT_EQ(download(), places.updates() / "C.dmg");
    EXPECT_EQ(content(places.updates() / "C.dmg"), "image");
}

} // namespace
} // namespace corvane
