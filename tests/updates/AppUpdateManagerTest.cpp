#include "updates/AppUpdateManager.h"

#include "support/ManualClock.h"
#include "support/PublishedDocuments.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::keepResult;
using testing::resultOf;
using CheckResult = AppUpdateManager::CheckResult;
using UpdateAvailable = AppUpdateManager::UpdateAvailable;
using Current = AppUpdateManager::Current;
using NetworkError = AppUpdateManager::NetworkError;

constexpr auto base = "http://127.0.0.1:3002/Corvane/mac_whatsnew/";
constexpr auto store = "http://127.0.0.1:3002/lookup?id=0000000000&country=us";
const std::string notesAddress = std::string(base) + "whatsnew.html?ts=1";
const std::string versionAddress = std::string(base) + "version.json?ts=1";
const std::string archiveAddress = std::string(base) + "Previous_Releases/index.json?ts=1";

class AppUpdateManagerTest : public ::testing::Test {
protected:
    void answerAtOnce() { http_.respond = testing::PublishedDocuments(&published_); }

    std::optional<CheckResult> check() { return resultOf(manager_.checkForUpdates()); }

    std::vector<std::string> asked() const
    {
        std::vector<std::string> addresses;
        for (const auto& request : http_.requests())
            addresses.push_back(request.url.text());
        return addresses;
    }

    std::map<std::string, std::string> published_{
        {notesAddress, "{{VERSION}} {{BUILD_DATE}}"},
        {versionAddress, R"({"version":"1.3","downloadURL":"https://h/C.dmg","sha256":"ab"})"},
        {store, R"({"results":[{"version":"1.1"}]})"},
        {archiveAddress, R"({"archives":[{"file":"1.1.html","title":"1.1"},{"file":"1.0.html"}]})"},
    };
    testing::ScriptedHttpClient http_;
    testing::ManualClock clock_{Clock::TimePoint(std::chrono::milliseconds(1'999))};
    AppUpdateManager manager_{http_, clock_, testing::endpointsAt(), AppInfo{"1.2", "Aug 12, 2026"}};
    const std::vector<ArchiveEntry> archives_{{*Url::parse(std::string(base) + "Previous_Releases/1.1.html"), "1.1"}};
};

TEST_F(AppUpdateManagerTest, OffersTheNewerVersionWithItsLinkNotesAndArchive)
{
    answerAtOnce();
    const auto https = Url::parse("https://h/C.dmg");
    EXPECT_EQ(check(), CheckResult(UpdateAvailable{"1.3 Aug 12, 2026", archives_, "1.3", https, "ab"}));
    EXPECT_EQ(asked(), (std::vector<std::string>{notesAddress, versionAddress, store, archiveAddress}));
    EXPECT_EQ(http_.requests()[0].limit, BodyLimit::page);
    for (const auto& request : http_.requests())
        EXPECT_TRUE(request.method == HttpMethod::get && request.headers.empty() && request.body.empty());

    const auto page = Url::parse("http://127.0.0.1:3002/Corvane/mac/");
    for (const auto* version : {R"({"version":"1.3","sha256":"ab"})",
                                R"({"version":"1.3","downloadURL":"javascript:x.dmg","sha256":"ab"})"}) {
        published_[versionAddress] = version;
        EXPECT_EQ(check(), CheckResult(UpdateAvailable{"1.3 Aug 12, 2026", archives_, "1.3", page, {}}));
    }

    published_[store] = R"({"results":[{"version":"1.3"}]})";
    EXPECT_EQ(check(), CheckResult(UpdateAvailable{"1.3 Aug 12, 2026", archives_, "1.3", {}, {}}));
}

TEST_F(AppUpdateManagerTest, IsCurrentWhenNoSourceHasAnythingNewerOrAnswers)
{
    answerAtOnce();
    const CheckResult current(Current{"1.2 Aug 12, 2026", archives_});
    published_[versionAddress] = R"({"version":"1.1"})";
    EXPECT_EQ(check(), current);
    published_[versionAddress] = "<!DOCTYPE html>404";
    EXPECT_EQ(check(), current);
    published_.erase(versionAddress);
    published_.erase(store);
    published_.erase(archiveAddress);
    EXPECT_EQ(check(), CheckResult(Current{"1.2 Aug 12, 2026", {}}));
}

TEST_F(AppUpdateManagerTest, AnUnknownOwnVersionCountsAsTheFirst)
{
    answerAtOnce();
    AppUpdateManager nameless(http_, clock_, testing::endpointsAt(), AppInfo{});
    published_[versionAddress] = R"({"version":"1.0"})";
    published_.erase(store);
    const auto result = resultOf(nameless.runCheck());
    EXPECT_EQ(result, CheckResult(Current{"1.0 ", archives_}));
}

TEST_F(AppUpdateManagerTest, ReportsNothingAndAsksNothingMoreWithoutReadableNotes)
{
    answerAtOnce();
    const CheckResult failed(NetworkError{"Could not fetch release notes — check your connection."});
    for (const auto* page : {"", "a\xFF"}) {
        published_[notesAddress] = page;
        EXPECT_EQ(check(), failed);
    }
    published_.erase(notesAddress);
    EXPECT_EQ(check(), failed);
    EXPECT_EQ(asked(), (std::vector<std::string>(3, notesAddress)));
}

TEST_F(AppUpdateManagerTest, AsksBothSourcesAtOnceAndTakesTheirAnswersInAnyOrder)
{
    for (const bool isStoreFirst : {false, true}) {
        const auto before = http_.requests().size();
        std::optional<CheckResult> result;
        TaskScope scope;
        scope.start(keepResult(manager_.checkForUpdates(), &result));
        EXPECT_TRUE(http_.answer(before, HttpResponse{200, "{{VERSION}}"}));
        EXPECT_EQ(http_.waiting(), 2U);
        for (const bool isStore : {isStoreFirst, !isStoreFirst}) {
            const auto& document = published_[isStore ? store : versionAddress];
            EXPECT_EQ(http_.requests().size(), before + 3);
            EXPECT_TRUE(http_.answer(before + (isStore ? 2 : 1), HttpResponse{200, document}));
        }
        EXPECT_TRUE(http_.answer(before + 3, std::unexpected(Error{})));
        ASSERT_TRUE(result);
        EXPECT_EQ(std::get<UpdateAvailable>(*result).storeVersion, "1.3");
    }
}

TEST_F(AppUpdateManagerTest, OnlyABackgroundCheckMovesTheFlagAndAFailureLeavesIt)
{
    answerAtOnce();
    struct Case {
        bool before;
        std::string version, notes;
        int answer;
        bool after;
    };
    for (const auto& [before, version, notes, answer, after] : std::vector<Case>{
             {false, R"({"version":"1.3"})", "<p>", 1, true},
             {true, R"({"version":"1.2"})", "<p>", 0, false},
             {true, R"({"version":"1.2"})", "", -1, true},
             {false, R"({"version":"1.3"})", "", -1, false},
         }) {
        published_[versionAddress] = version;
        published_[notesAddress] = notes;
        manager_.hasPendingAppUpdate().set(before);
        check();
        EXPECT_EQ(*manager_.hasPendingAppUpdate(), before);
        EXPECT_EQ(resultOf(manager_.backgroundCheck()), answer);
        EXPECT_EQ(*manager_.hasPendingAppUpdate(), after);
    }
}

TEST_F(AppUpdateManagerTest, ACheckThatIsCancelledAnywhereLeavesNothingBehind)
{
    // After so many answers: at the notes, at both sources, at one of them, at the archive.
    for (std::size_t answers = 0; answers <= 3; ++answers) {
        const auto before = http_.requests().size();
        std::optional<CheckResult> result;
        std::optional<std::int64_t> background;
        TaskScope scope;
        scope.start(keepResult(manager_.checkForUpdates(), &result));
        EXPECT_TRUE(*manager_.isCheckingForUpdates());
        for (std::size_t i = 0; i < answers; ++i)
            EXPECT_TRUE(http_.answer(before + i, HttpResponse{200, "<p>"}));
        scope.start(keepResult(manager_.backgroundCheck(), &background));
        scope.cancel();
        EXPECT_FALSE(*manager_.isCheckingForUpdates());
        EXPECT_FALSE(result || background);
        EXPECT_EQ(http_.waiting(), 0U) << answers;
    }
    EXPECT_FALSE(*manager_.hasPendingAppUpdate());
}

} // namespace
} // namespace corvane
