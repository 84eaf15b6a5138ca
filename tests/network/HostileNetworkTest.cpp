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
    HostileNetworkTest() { publish(server_, GetParam()); }

    std::string outcomeOf(const Fault& fault)
    {
        server_.goWrong(GetParam().path, fault);
        return run(fault.lasts == Fault::Lasts::briefly ? program_ : hurried_);
    }

    std::string healedOutcome()
    {
        server_.heal();
        return run(program_);
    }

    FaultyServer server_;
    FetchingProgram program_{server_.base(), tightLimits};
    FetchingProgram hurried_{server_.base(), hurriedLimits};

private:
    static std::string run(FetchingProgram& program) { return (program.*GetParam().run)(); }
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
        server_.documents = {{imagePath, "image"}};
        fs::create_directory(*places_.downloads);
        std::ofstream(older_) << "old";
    }

    DMGDownloadHelper::Result download(std::optional<std::string> sha256 = {})
    {
        return resultOf(helper_.download(server_.url(imagePath), std::move(sha256), nullptr));
    }

    void expectNothingChanged(const std::string& after)
    {
        EXPECT_EQ(content(older_), "old") << after;
        EXPECT_EQ(std::distance(fs::directory_iterator(*places_.downloads), {}), 1) << after;
        EXPECT_FALSE(fs::exists(places_.updates())) << after;
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

    FaultyServer server_;
    SoupHttpClient http_{"1"};
    SystemClock clock_;
    testing::TemporaryFolder folder_;
    const Places places_{.data = folder_ / "data", .downloads = folder_ / "Downloads"};
    const fs::path older_ = *places_.downloads / "C.dmg";
    PosixFileStore files_;
    PosixIncomingFiles incoming_;
    testing::RecordingDesktop desktop_;
    DMGDownloadHelper helper_{http_, files_, incoming_, desktop_, clock_, places_};
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
    const auto files = [this] { return std::distance(fs::directory_iterator(*places_.downloads), {}); };
    server_.documents.erase(imagePath);
    const Fault stalls{.name = "stalls", .reply = [](const std::string&, const std::string&) {
                           return testing::RawServer::Reply{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf",
                                                            testing::RawServer::Reply::Then::wait};
                       }};
    server_.goWrong(imagePath, stalls);
    std::optional<DMGDownloadHelper::Result> result;
    TaskScope scope;
    scope.start(keepResult(helper_.download(server_.url(imagePath), std::nullopt, nullptr), &result));
    ASSERT_TRUE(iterateUntil([&] { return files() == 2; })) << "the first bytes have arrived";
    scope.cancel();
    expectNothingChanged("cancelled");
    EXPECT_TRUE(iterateUntil([&] { return server_.raw().hangUps == 1; }));
    EXPECT_FALSE(result);
}

TEST_F(HostileDownloadTest, AGoodDownloadReplacesAFileNeverAFolderAndFindsAnotherPlace)
{
    // The digest of "image".
    EXPECT_EQ(download("6105D6CC76AF400325E94D588CE511BE5BFDBB73B437DC51ECA43917D7A43E3D"), older_);
    EXPECT_EQ(content(older_), "image");

    fs::remove(older_);
    fs::create_directory(older_);
    EXPECT_FALSE(download());
    EXPECT_TRUE(fs::is_directory(older_));
    EXPECT_EQ(std::distance(fs::directory_iterator(*places_.downloads), {}), 1);

    fs::remove_all(*places_.downloads);
    std::ofstream(*places_.downloads) << "a file where the folder should be";
    EXPECT_EQ(download(), places_.updates() / "C.dmg");
    EXPECT_EQ(content(places_.updates() / "C.dmg"), "image");
}

} // namespace
} // namespace corvane
