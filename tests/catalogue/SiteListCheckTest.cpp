#include "catalogue/SiteListManager.h"
#include "support/LongCatalogue.h"
#include "support/MainContext.h"
#include "support/ManualClock.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/PublishedDocuments.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::keepResult;
using testing::resultOf;
using CheckResult = SiteListManager::CheckResult;
using UpdateAvailable = SiteListManager::UpdateAvailable;
using Current = SiteListManager::Current;
using NetworkError = SiteListManager::NetworkError;
using Addresses = std::vector<std::string>;

constexpr auto offline = "Network request failed — check your connection.";
constexpr auto unreadable = "Remote sites.json could not be parsed.";
constexpr auto inUse = R"([{"service":"A","url":"a","description":"1"},{"service":"B","url":"b","description":"2"}])";
constexpr auto spacedOut =
    R"([ {"service":"A","description":"1","url":"a"}, {"icon":0,"service":"B","url":"b","description":"2"} ])";
constexpr auto reordered =
    R"([{"service":"B","url":"b","description":"2"},{"service":"A","url":"a","description":"1"}])";

/// The outcome in one line.
std::string told(const std::optional<CheckResult>& result)
{
    if (!result)
        return "still waiting";
    if (const auto* error = std::get_if<NetworkError>(&*result))
        return "error: " + error->message;
    const auto* update = std::get_if<UpdateAvailable>(&*result);
    const auto& notes = update != nullptr ? update->whatsNewHTML : std::get<Current>(*result).whatsNewHTML;
    const auto& archives = update != nullptr ? update->archives : std::get<Current>(*result).archives;
    auto text = (update != nullptr ? "update " + update->pendingData : "current") + " notes:" + notes.value_or("none");
    for (const auto& [url, title] : archives)
        text += " " + title + "=" + url.text();
    return text;
}

class SiteListCheckTest : public ::testing::Test {
protected:
    SiteListCheckTest()
    {
        resources_.files["sites.json"] = inUse;
        manager_.loadSites();
        http_.respond = testing::PublishedDocuments(&published_);
    }

    std::string check(std::optional<std::string> sourceUrl)
    {
        return told(resultOf(manager_.checkForUpdates(std::move(sourceUrl))));
    }

    Addresses asked() const
    {
        Addresses addresses;
        for (const auto& request : http_.requests())
            addresses.push_back(request.url.text());
        return addresses;
    }

    std::map<std::string, std::string> published_;
    testing::ScriptedHttpClient http_;
    testing::ManualClock clock_{Clock::TimePoint(std::chrono::milliseconds(1'999))};
    testing::MemoryFileStore files_;
    testing::MemoryResources resources_;
    SiteListManager manager_{
        files_, resources_, Places{.data = "/data"},
        SiteListFetcher(http_, clock_, testing::endpointsAt("http://n/", "http://127.0.0.1:3002/p/"))};
};

TEST_F(SiteListCheckTest, AsksTheUsualAddressForTheListItsNotesAndTheirArchive)
{
    const Addresses all{"http://127.0.0.1:3002/p/Corvane/sites/sites.json?ts=1",
                        "http://127.0.0.1:3002/p/Corvane/sites/whatsnew.html?ts=1",
                        "http://127.0.0.1:3002/p/Corvane/sites/archive/index.json?ts=1"};
    published_ = {{all[0], reordered},
                  {all[1], "<p>ä"},
                  {all[2], R"({"archives":[{"file":"1.html","title":"One"},{"file":"x"}]})"}};
    const auto expected =
        "update " + std::string(reordered) + " notes:<p>ä One=http://127.0.0.1:3002/p/Corvane/sites/archive/1.html";
    EXPECT_EQ(check(std::nullopt), expected);
    EXPECT_EQ(asked(), all);
    EXPECT_EQ(check(""), expected);
    EXPECT_EQ(http_.requests()[0].limit, BodyLimit::json);
    EXPECT_EQ(http_.requests()[1].limit, BodyLimit::page);
    EXPECT_EQ(http_.requests()[2].limit, BodyLimit::json);
    for (const auto& request : http_.requests())
        EXPECT_TRUE(request.method == HttpMethod::get && request.headers.empty() && request.body.empty());
}

TEST_F(SiteListCheckTest, TellsEachOutcomeOfTheListInItsWords)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {inUse, "current notes:none"},
        {spacedOut, "current notes:none"},
        {reordered, "update " + std::string(reordered) + " notes:none"},
        {"[]", "update [] notes:none"},
        {R"([{"service":"A"}])", "error: " + std::string(unreadable)},
        {R"({"source_url":""})", "error: " + std::string(unreadable)},
        {R"({"source_url":7})", "error: " + std::string(unreadable)},
        {R"({"Source_url":"http://h/other"})", "error: " + std::string(unreadable)},
        {R"([{"source_url":"http://h/other"}])", "error: " + std::string(unreadable)},
        {"<!DOCTYPE html><title>404", "error: " + std::string(unreadable)},
        {"[\xFF]", "error: " + std::string(unreadable)},
        {"", "error: " + std::string(unreadable)},
    };
    for (const auto& [document, expected] : cases) {
        published_["http://h/sites.json?ts=1"] = document;
        EXPECT_EQ(check("http://h/sites.json"), expected) << document;
    }
    published_.clear();
    EXPECT_EQ(check("http://h/sites.json"), "error: " + std::string(offline));
    EXPECT_EQ(check(" http://h/sites.json"), "error: Invalid sites URL:  http://h/sites.json");
    EXPECT_EQ(check("sites"), "error: Invalid sites URL: sites");
}

TEST_F(SiteListCheckTest, FollowsOneRedirectDocumentAndTakesWhatStandsBesideTheRealList)
{
    const std::string start = "http://h/sites.json";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"http://r/x/sites.json", "update [] notes:<p> T=http://r/x/archive/f"},
        {"http://r/none", "error: Failed to fetch redirected sites URL: http://r/none"},
        {"no address", "error: Failed to fetch redirected sites URL: no address"},
        {"http://r/again", "error: " + std::string(unreadable)},
    };
    for (const auto& [address, expected] : cases) {
        published_ = {{start + "?ts=1", R"({"more":1,"source_url":")" + address + "\"}"},
                      {"http://r/x/sites.json?ts=1", "[]"},
                      {"http://r/x/whatsnew.html?ts=1", "<p>"},
                      {"http://r/x/archive/index.json?ts=1", R"({"archives":[{"file":"f","title":"T"}]})"},
                      {"http://r/again?ts=1", R"({"source_url":"http://r/x/sites.json"})"}};
        EXPECT_EQ(check(start), expected);
    }
}

TEST_F(SiteListCheckTest, FindsNotesAndArchiveByTheLastNameOfTheDocument)
{
    const std::vector<std::pair<std::string, Addresses>> cases{
        {"http://h/sites.json?v=2#f", {"http://h/whatsnew.html?v=2#f&ts=1", "http://h/archive/index.json?ts=1"}},
        {"http://h/sites.json/sites.json",
         {"http://h/sites.json/whatsnew.html?ts=1", "http://h/sites.json/archive/index.json?ts=1"}},
        {"http://h/?f=sites.json", {"http://h/?f=whatsnew.html&ts=1", "http://h/?f=archive/index.json&ts=1"}},
        {"http://h/list", {"http://127.0.0.1:3002/p/Corvane/sites/whatsnew.html?ts=1"}},
    };
    for (const auto& [address, beside] : cases) {
        published_ = {{cacheBusted(address, CheckTime(std::chrono::seconds(1))), inUse}};
        const auto before = asked().size();
        EXPECT_EQ(check(address), "current notes:none") << address;
        auto all = asked();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before) + 1);
        EXPECT_EQ(all, beside) << address;
    }
}

TEST_F(SiteListCheckTest, TakesNoNotesThatAreEmptyOrNoText)
{
    for (const auto* page : {"", "\xFF", "a\xC3"}) {
        published_ = {{"http://h/sites.json?ts=1", inUse}, {"http://h/whatsnew.html?ts=1", page}};
        EXPECT_EQ(check("http://h/sites.json"), "current notes:none");
    }
}

TEST_F(SiteListCheckTest, OnlyABackgroundCheckMovesTheFlagAndAFailureLeavesIt)
{
    struct Case {
        bool before;
        std::string document;
        int answer;
        bool after;
    };
    for (const auto& [before, document, answer, after] : std::vector<Case>{
             {false, reordered, 1, true},
             {true, reordered, 1, true},
             {true, inUse, 0, false},
             {true, "torn", -1, true},
             {false, "torn", -1, false},
         }) {
        published_["http://h/sites.json?ts=1"] = document;
        manager_.hasPendingSiteUpdate().set(before);
        check("http://h/sites.json");
        EXPECT_EQ(*manager_.hasPendingSiteUpdate(), before);
        EXPECT_EQ(resultOf(manager_.backgroundCheck("http://h/sites.json")), answer);
        EXPECT_EQ(*manager_.hasPendingSiteUpdate(), after);
    }
    EXPECT_EQ(manager_.sites()->front().service, "A");
    EXPECT_EQ(files_.writes, 0);
}

TEST_F(SiteListCheckTest, IsCheckingExactlyAsLongAsACheckThatTheUserAskedForRuns)
{
    http_.respond = nullptr;
    std::vector<bool> told;
    const auto observation = manager_.isCheckingForUpdates().observe([&](bool value) { told.push_back(value); });

    std::optional<std::int64_t> ignored;
    TaskScope background;
    background.start(keepResult(manager_.backgroundCheck(std::nullopt), &ignored));
    EXPECT_TRUE(told.empty());

    // Ended by its answer, cancelled at each of its waits, and cancelled while another one runs.
    for (std::size_t answers = 0; answers <= 3; ++answers) {
        std::optional<CheckResult> result;
        TaskScope scope;
        scope.start(keepResult(manager_.checkForUpdates(std::nullopt), &result));
        EXPECT_TRUE(*manager_.isCheckingForUpdates());
        for (std::size_t i = 0; i < answers; ++i)
            EXPECT_TRUE(http_.answer(http_.requests().size() - 1, HttpResponse{200, inUse}));
        EXPECT_EQ(result.has_value(), answers == 3);
        scope.cancel();
        EXPECT_FALSE(*manager_.isCheckingForUpdates()) << answers;
    }
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false, true, false, true, false}));

    std::optional<CheckResult> first, second;
    TaskScope cancelled, kept;
    cancelled.start(keepResult(manager_.checkForUpdates(std::nullopt), &first));
    kept.start(keepResult(manager_.checkForUpdates(std::nullopt), &second));
    cancelled.cancel();
    EXPECT_TRUE(*manager_.isCheckingForUpdates());
    http_.answer(http_.requests().size() - 1, std::unexpected(Error{}));
    EXPECT_TRUE(second);
    EXPECT_FALSE(*manager_.isCheckingForUpdates());
    EXPECT_EQ(http_.waiting(), 1U) << "only the background check is left";
}

/// A check that takes turns of the main loop.
struct RunningCheck {
    explicit RunningCheck(SiteListManager& manager)
    {
        scope.start(keepResult(manager.checkForUpdates("http://h/list"), &result));
    }
    bool finish()
    {
        return testing::iterateUntil([this] { return result.has_value(); });
    }

    std::optional<CheckResult> result;
    TaskScope scope;
};

TEST_F(SiteListCheckTest, LongDocumentsHaveTheSameOutcomes)
{
    const auto list = testing::longCatalogue("A");
    const auto filler = [](int number) { return fmt::format(R"("{}":"{}",)", number, std::string(70'000, ',')); };
    const auto redirect = [&](std::string_view first, std::string_view last) {
        return fmt::format(R"( {{{}{}{}{}{}"end":[]}} )", first, filler(1), filler(2), filler(3), last);
    };
    const std::string named = R"("source_url":"http://r/list",)", blank = R"("source_url":"",)",
                      number = R"("source_url":7,)";
    const std::string updated = "update [] notes:none", refused = "error: " + std::string(unreadable);
    const std::vector<std::pair<std::string, std::string>> cases{
        {list, "update " + list + " notes:none"},
        {list + "]", refused},
        {list.substr(0, list.size() - 2), refused},
        {redirect(named, ""), updated},
        {redirect("", named), updated},
        {redirect(number, named), updated},
        {"\xEF\xBB\xBF" + redirect(blank, named), updated},
        {redirect(named, blank), refused}, // the last one counts
        {redirect(named, number), refused},
        {redirect(named, "") + "}", refused},
        {redirect(named, "no member,"), refused},
        {redirect("", ""), refused},
    };
    published_["http://r/list?ts=1"] = "[]";
    for (const auto& [document, expected] : cases) {
        published_["http://h/list?ts=1"] = document;
        RunningCheck running(manager_);
        ASSERT_TRUE(running.finish());
        EXPECT_TRUE(told(running.result) == expected) << document.substr(0, 60);
    }
}

TEST_F(SiteListCheckTest, ChecksThatDecodeAtTheSameTimeKeepApart)
{
    const auto old = testing::longCatalogue("old");
    published_["http://h/list?ts=1"] = old;
    RunningCheck older(manager_);
    g_main_context_iteration(nullptr, FALSE);
    published_["http://h/list?ts=1"] = inUse;
    EXPECT_EQ(check("http://h/list"), "current notes:none");
    EXPECT_TRUE(*manager_.isCheckingForUpdates());
    EXPECT_EQ(resultOf(manager_.backgroundCheck("http://h/list")), 0);
    EXPECT_FALSE(older.result);

    published_["http://h/list?ts=1"] = testing::longCatalogue("cancelled");
    std::optional<std::int64_t> background;
    TaskScope scope;
    scope.start(keepResult(manager_.backgroundCheck("http://h/list"), &background));
    g_main_context_iteration(nullptr, FALSE);
    scope.cancel();

    ASSERT_TRUE(older.finish());
    EXPECT_TRUE(told(older.result) == "update " + old + " notes:none");
    testing::iteratePending();
    EXPECT_FALSE(background);
    EXPECT_FALSE(*manager_.hasPendingSiteUpdate());
    EXPECT_FALSE(*manager_.isCheckingForUpdates());
}

TEST_F(SiteListCheckTest, ACheckCancelledBetweenSlicesLeavesNothingBehind)
{
    published_["http://h/list?ts=1"] = testing::longCatalogue("new");
    for (int turns = 0; turns < 2; ++turns) {
        std::optional<CheckResult> result;
        TaskScope scope;
        scope.start(keepResult(manager_.checkForUpdates("http://h/list"), &result));
        for (int turn = 0; turn < turns; ++turn)
            g_main_context_iteration(nullptr, FALSE);
        EXPECT_TRUE(*manager_.isCheckingForUpdates());
        scope.cancel();
        EXPECT_FALSE(*manager_.isCheckingForUpdates());
        testing::iteratePending();
        EXPECT_FALSE(result) << turns;
    }
}

TEST_F(SiteListCheckTest, AListThatIsAcceptedDuringTheSlowFetchesIsNoUpdateAnyMore)
{
    http_.respond = nullptr;
    for (const auto& list : {std::string(reordered), testing::longCatalogue("accepted"), std::string(inUse)}) {
        for (const std::size_t waitsFor : {1U, 2U}) { // the release notes, their archive
            manager_.applyPendingSiteData("[]");
            const auto first = http_.requests().size();
            std::optional<std::int64_t> answer;
            TaskScope scope;
            scope.start(keepResult(manager_.backgroundCheck(std::nullopt), &answer));
            const auto respond = [&](std::size_t request, const std::string& body) {
                ASSERT_TRUE(testing::iterateUntil([&] { return http_.requests().size() > first + request; }));
                EXPECT_TRUE(http_.answer(first + request, HttpResponse{200, body}));
            };
            respond(0, list);
            if (waitsFor == 2)
                respond(1, "<p>");
            manager_.hasPendingSiteUpdate().set(true); // an earlier check saw the same list
            manager_.applyPendingSiteData(list);
            for (auto request = waitsFor; request <= 2; ++request)
                respond(request, "");
            ASSERT_TRUE(testing::iterateUntil([&] { return answer.has_value(); }));
            EXPECT_EQ(answer, 0) << list.substr(0, 60);
            EXPECT_FALSE(*manager_.hasPendingSiteUpdate());
        }
    }
}

TEST_F(SiteListCheckTest, ComparesWithWhatIsInUseOnceTheListIsRead)
{
    const auto accepted = testing::longCatalogue("accepted");
    published_["http://h/list?ts=1"] = accepted;
    RunningCheck before(manager_); // begins to read before the same list is accepted
    manager_.applyPendingSiteData(accepted);
    RunningCheck after(manager_);
    ASSERT_TRUE(before.finish() && after.finish());
    EXPECT_EQ(told(before.result), "current notes:none");
    EXPECT_EQ(told(after.result), "current notes:none");

    published_["http://h/list?ts=1"] = inUse;
    manager_.applyPendingSiteData(testing::longCatalogue("next"));
    RunningCheck quick(manager_); // has its list before the accepted one is loaded
    manager_.applyPendingSiteData(inUse);
    ASSERT_TRUE(quick.finish());
    EXPECT_EQ(told(quick.result), "current notes:none");
}

} // namespace
} // namespace corvane
