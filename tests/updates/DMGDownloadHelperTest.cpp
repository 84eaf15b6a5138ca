#include "updates/DMGDownloadHelper.h"

#include "support/ManualClock.h"
#include "support/MemoryIncomingFiles.h"
#include "support/RecordingDesktop.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::resultOf;
using Contents = std::map<fs::path, std::string>;

const Url link = *Url::parse("https://h/C.dmg");

class DMGDownloadHelperTest : public ::testing::Test {
protected:
    DMGDownloadHelperTest()
    {
        http_.respond = [this](const HttpRequest&) { return answer_; };
    }

    /// Where the image was stored, or why not.
    std::string download(std::optional<std::string> sha256 = {}, std::optional<fs::path> downloads = "/Downloads")
    {
        DMGDownloadHelper helper(http_, files_, incoming_, desktop_, clock_,
                                 Places{.data = "/data", .downloads = std::move(downloads)});
        const auto result = resultOf(helper.download(link, std::move(sha256), nullptr));
        if (!result)
            return "still waiting";
        return *result ? (*result)->string() : "failed: " + result->error().message;
    }

    testing::ScriptedHttpClient http_;
    Result<HttpResponse> answer_ = HttpResponse{200, "image"};
    testing::MemoryFileStore files_;
    testing::MemoryIncomingFiles incoming_{files_};
    testing::RecordingDesktop desktop_;
    testing::ManualClock clock_;
    const fs::path first_ = "/Downloads/C.dmg";
    const fs::path second_ = "/data/Updates/C.dmg";
};

TEST_F(DMGDownloadHelperTest, StoresTheImageAmongTheDownloadsInPlaceOfAnOlderOne)
{
    files_.files[first_] = "old";
    EXPECT_EQ(download(), first_);
    EXPECT_EQ(files_.files, (Contents{{first_, "image"}}));
    EXPECT_TRUE(files_.folders.empty()) << "the other folder is made only when it is needed";

    answer_ = HttpResponse{299, ""};
    EXPECT_EQ(download(), first_);
    EXPECT_EQ(files_.files, (Contents{{first_, ""}}));
    EXPECT_EQ(incoming_.temporaries, 0);
}

TEST_F(DMGDownloadHelperTest, FallsBackToItsOwnFolder)
{
    incoming_.closedFolders = {"/Downloads"}; // not writable or not there
    incoming_.refused = {first_};
    files_.files[second_] = "old";
    EXPECT_EQ(download(), second_);
    EXPECT_EQ(files_.files, (Contents{{second_, "image"}}));
    EXPECT_TRUE(files_.folders.contains("/data/Updates"));

    incoming_.closedFolders.clear(); // it can be received there, but not stored
    EXPECT_EQ(download(), second_);
    incoming_.refused.clear();
    EXPECT_EQ(download({}, std::nullopt), second_);
    EXPECT_EQ(incoming_.createdIn, (std::vector<fs::path>{"/data/Updates", "/Downloads", "/data/Updates"}));
    EXPECT_EQ(incoming_.temporaries, 0);
}

TEST_F(DMGDownloadHelperTest, TellsEachFailureAndLeavesNothing)
{
    struct Case {
        std::string_view what, told;
        std::function<void()> arrange;
    };
    const auto noDownloads = [this] {
        incoming_.closedFolders.insert("/Downloads");
        incoming_.refused.insert(first_);
    };
    for (const auto& [what, told, arrange] : std::vector<Case>{
             {"transport", "failed: No route", [this] { answer_ = std::unexpected(Error{"No route"}); }},
             {"missing", "failed: Server returned status 404.", [this] { answer_ = HttpResponse{404, "page"}; }},
             {"moved nowhere", "failed: Server returned status 304.", [this] { answer_ = HttpResponse{304, ""}; }},
             {"odd status", "failed: Server returned status 199.", [this] { answer_ = HttpResponse{199, "x"}; }},
             {"a status comes before trouble with folders", "failed: Server returned status 500.",
              [&] {
                  answer_ = HttpResponse{500, "page"};
                  noDownloads();
                  files_.failsToMakeFolders = true;
              }},
             {"disk", "failed: No space left on device", [this] { incoming_.isDiskFull = true; }},
             {"a folder in the way is no reason to go elsewhere", "failed: Is a directory",
              [this] { files_.unremovable = {first_}; }},
             {"the same where nothing can be written", "failed: Is a directory",
              [&] {
                  incoming_.closedFolders = {"/Downloads"};
                  files_.unremovable = {first_};
              }},
             {"no folder of its own", "failed: Not a directory",
              [&] {
                  noDownloads();
                  files_.failsToMakeFolders = true;
              }},
             {"a folder in the way there too", "failed: Is a directory",
              [&] {
                  noDownloads();
                  files_.unremovable = {second_};
              }},
             {"nowhere to go", "failed: Cross-device link", [this] { incoming_.refused = {first_, second_}; }},
             {"nowhere to receive", "failed: Permission denied",
              [this] { incoming_.closedFolders = {"/Downloads", "/data/Updates"}; }},
         }) {
        answer_ = HttpResponse{200, "image"};
        incoming_.closedFolders.clear();
        incoming_.refused.clear();
        incoming_.isDiskFull = false;
        files_.unremovable.clear();
        files_.failsToMakeFolders = false;
        arrange();
        EXPECT_EQ(download(), told) << what;
        EXPECT_TRUE(files_.files.empty()) << what;
        EXPECT_EQ(incoming_.temporaries, 0) << what;
    }
}

TEST_F(DMGDownloadHelperTest, AnImageThatIsNotTheAnnouncedOneIsThrownAwayAndTheOlderOneStays)
{
    files_.files[first_] = "old";
    for (const auto* wrong : {"", "digest of other", "digest of imag"})
        EXPECT_EQ(download(wrong), "failed: The downloaded file is not the one that was announced.");
    EXPECT_EQ(files_.files, (Contents{{first_, "old"}}));
    EXPECT_EQ(incoming_.temporaries, 0);
    EXPECT_EQ(download("DIGEST of Image"), first_);
    EXPECT_EQ(files_.files, (Contents{{first_, "image"}}));
}

TEST_F(DMGDownloadHelperTest, TellsHowFarItHasCome)
{
    DMGDownloadHelper helper(http_, files_, incoming_, desktop_, clock_, Places{.data = "/data"});
    std::string told;
    const auto result = resultOf(helper.download(link, {}, [&](const DownloadProgress& progress) {
        told += std::to_string(progress.received) + "/" + std::to_string(*progress.total) + " ";
    }));
    EXPECT_TRUE(result && *result);
    EXPECT_EQ(told, "2/5 5/5 ");
}

TEST_F(DMGDownloadHelperTest, OpensTheImageAtOnceAndQuitsAMomentLater)
{
    {
        DMGDownloadHelper helper(http_, files_, incoming_, desktop_, clock_, Places{.data = "/data"});
        helper.openInstallerAndQuit("/home/ä b/100%/?#.dmg");
        clock_.advance(std::chrono::milliseconds(1499));
        EXPECT_EQ(desktop_.calls, (std::vector<std::string>{"open file:///home/%C3%A4%20b/100%25/%3F%23.dmg"}));
        clock_.advance(std::chrono::milliseconds(1));
        EXPECT_EQ(desktop_.calls.back(), "quit");
        helper.openInstallerAndQuit("/x");
    }
    EXPECT_EQ(clock_.pendingTimers(), 0U);
}

} // namespace
} // namespace corvane
