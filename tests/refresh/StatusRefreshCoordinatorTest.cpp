#include "refresh/StatusRefreshCoordinator.h"

#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWake.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <map>
#include <set>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t lastDraw = std::uint64_t{1} << 53U;

class StatusRefreshCoordinatorTest : public ::testing::Test {
protected:
    StatusRefreshCoordinatorTest()
    {
        http_.respond = [this](const HttpRequest& request) { return respond(request); };
        makeCoordinator();
    }

    void start() { coordinator_->start(sites_, app_, settings_); }

    void makeWaitForAnswers() { http_.respond = nullptr; }

    /// One for which everything is due.
    void makeCoordinator()
    {
        coordinator_ =
            std::make_unique<StatusRefreshCoordinator>(pushDevices_, clock_, queue_, wake_, [this] { return draw_; });
    }

    static std::string kindOf(const HttpRequest& request)
    {
        for (const auto* kind : {"pending", "sites.json", "mac_whatsnew/whatsnew.html"}) {
            if (request.url.text().contains(kind))
                return kind;
        }
        return "other";
    }

    Result<HttpResponse> respond(const HttpRequest& request)
    {
        const auto kind = kindOf(request);
        if (failing_.contains(kind))
            return std::unexpected(Error{"down"});
        static const std::map<std::string, std::string> bodies{
            {"pending", R"({"notifications":[]})"}, {"sites.json", "[]"}, {"mac_whatsnew/whatsnew.html", "<p>"}};
        const auto body = bodies.find(kind);
        return HttpResponse{200, body == bodies.end() ? "[]" : body->second};
    }

    /// How often each check has begun since the request of this number: notifications, service list, program.
    std::string ran(std::size_t since = 0) const
    {
        std::map<std::string, int> counts;
        for (auto i = since; i < http_.requests().size(); ++i)
            ++counts[kindOf(http_.requests()[i])];
        return fmt::format("{} {} {}", counts["pending"], counts["sites.json"], counts["mac_whatsnew/whatsnew.html"]);
    }

    /// Answers what waits, again and again, until nothing does.
    void answerEverything()
    {
        for (std::size_t i = 0; i < http_.requests().size(); ++i)
            http_.answer(i, respond(http_.requests()[i]));
    }

    testing::ScriptedHttpClient http_;
    testing::ManualClock clock_;
    testing::ManualMainQueue queue_;
    testing::ManualWake wake_;
    testing::MemoryDefaultsStore defaults_;
    testing::MemoryFileStore files_;
    testing::MemoryResources resources_;
    const Places places_{.data = "/data"};
    const Endpoints endpoints_ = testing::endpointsAt("http://n/", "http://p/");
    std::set<std::string> failing_;
    std::uint64_t draw_ = lastDraw / 2; // periods as they are

    PushDeviceManager pushDevices_{http_, defaults_, endpoints_, AppInfo{}};
    std::shared_ptr<SiteListManager> sites_ =
        std::make_shared<SiteListManager>(files_, resources_, places_, SiteListFetcher(http_, clock_, endpoints_));
    std::shared_ptr<AppUpdateManager> app_ =
        std::make_shared<AppUpdateManager>(http_, clock_, endpoints_, AppInfo{"1.2", ""});
    std::shared_ptr<SettingsManager> settings_ = std::make_shared<SettingsManager>(files_, places_);
    std::unique_ptr<StatusRefreshCoordinator> coordinator_ =
        std::make_unique<StatusRefreshCoordinator>(pushDevices_, clock_, queue_, wake_, [this] { return draw_; });
};

TEST_F(StatusRefreshCoordinatorTest, TheFirstStartRunsEachCheckOnceOneAfterAnother)
{
    makeWaitForAnswers();
    start();
    start();
    EXPECT_EQ(wake_.observers(), 1U);
    std::vector<std::string> kinds;
    while (http_.waiting() > 0) {
        EXPECT_EQ(http_.waiting(), kinds.size() == 6 ? 2U : 1U) << "only the two sources of versions are asked at once";
        answerEverything();
        kinds.assign(http_.requests().size(), "");
    }
    EXPECT_EQ(ran(), "1 1 1");
    for (std::size_t i = 0; i < kinds.size(); ++i)
        kinds[i] = kindOf(http_.requests()[i]);
    EXPECT_EQ(kinds, (std::vector<std::string>{"other", "pending", "sites.json", "other", "other",
                                               "mac_whatsnew/whatsnew.html", "other", "other", "other"}));
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(ran(), "1 1 1") << "the program became active within five seconds";
}

TEST_F(StatusRefreshCoordinatorTest, ForcedPassesRunEverythingAndKeepTheirDistance)
{
    start();
    struct Case {
        std::chrono::milliseconds pause;
        bool isWake;
        std::string_view ran;
    };
    for (const auto& [pause, isWake, expected] : std::vector<Case>{
             {4999ms, false, "1 1 1"},
             {1ms, false, "2 2 2"}, // at five seconds, though nothing is due
             {0ms, true, "2 2 2"},
             {4999ms, true, "2 2 2"},
             {1ms, true, "3 3 3"},
             {10s, false, "4 4 4"},
         }) {
        clock_.advance(pause);
        const auto before = ran();
        for (int twice = 0; twice < 2; ++twice)
            isWake ? wake_.wake() : coordinator_->forceKick();
        EXPECT_EQ(ran(), before) << "not in the turn of the call";
        queue_.runAll();
        EXPECT_EQ(ran(), expected);
    }
}

TEST_F(StatusRefreshCoordinatorTest, SuccessfulChecksComeBackAfterTheirSpreadPeriods)
{
    struct Case {
        std::uint64_t draw;
        std::chrono::seconds notify, sites, app;
    };
    for (const auto& [draw, notify, sites, app] : std::vector<Case>{
             {0, 1530s, 36720s, 73440s},
             {lastDraw, 2070s, 49680s, 99360s},
         }) {
        draw_ = draw;
        coordinator_ =
            std::make_unique<StatusRefreshCoordinator>(pushDevices_, clock_, queue_, wake_, [this] { return draw_; });
        start();
        std::map<std::string, std::chrono::seconds> second;
        for (auto passed = 0s; second.size() < 3; passed += 60s) {
            const auto seen = http_.requests().size();
            clock_.advance(60s);
            for (auto i = seen; i < http_.requests().size(); ++i)
                second.try_emplace(kindOf(http_.requests()[i]), passed + 60s);
            second.erase("other");
        }
        const auto tickAt = [](std::chrono::seconds due) { return (due + 59s) / 60 / 1s * 60s; };
        EXPECT_EQ(second["pending"], tickAt(notify));
        EXPECT_EQ(second["sites.json"], tickAt(sites));
        EXPECT_EQ(second["mac_whatsnew/whatsnew.html"], tickAt(app));
    }
}

TEST_F(StatusRefreshCoordinatorTest, AFailedCheckIsTriedAgainSoonAndAlone)
{
    struct Case {
        std::string failing;
        std::string_view after, healed;
    };
    for (const auto& [failing, after, healed] : std::vector<Case>{
             {"pending", "2 1 1", "3 1 1"},
             {"sites.json", "1 2 1", "1 3 1"},
             {"mac_whatsnew/whatsnew.html", "1 1 2", "1 1 3"},
         }) {
        failing_ = {failing};
        makeCoordinator();
        const auto before = http_.requests().size();
        start();
        clock_.advance(119s);
        EXPECT_EQ(ran(before), "1 1 1");
        clock_.advance(1s);
        EXPECT_EQ(ran(before), after);
        failing_.clear();
        clock_.advance(120s);
        EXPECT_EQ(ran(before), healed);
        clock_.advance(1200s);
        EXPECT_EQ(ran(before), healed) << "after a success the period is the usual one";
    }
}

TEST_F(StatusRefreshCoordinatorTest, APassThatHangsIsGivenUpAfterAMinuteAndNeverHeardOfAgain)
{
    makeWaitForAnswers();
    start();
    clock_.advance(30s);
    coordinator_->forceKick();
    queue_.runAll(); // dropped, but it counts as the last one
    clock_.advance(4s);
    coordinator_->forceKick();
    queue_.runAll();
    clock_.advance(26s); // the tick at exactly 60 s
    EXPECT_EQ(http_.requests().size(), 1U);

    clock_.advance(60s);
    ASSERT_EQ(http_.requests().size(), 2U);
    EXPECT_EQ(http_.waiting(), 1U) << "of the old pass nothing waits any more";
    EXPECT_FALSE(http_.answer(0, HttpResponse{200, ""}));

    answerEverything();
    EXPECT_EQ(ran(), "1 1 1");
    clock_.advance(1740s);
    EXPECT_EQ(ran(), "1 1 1") << "due times count from the end of the pass that ended";
    clock_.advance(60s);
    EXPECT_EQ(ran(), "1 1 1");
    EXPECT_EQ(http_.waiting(), 1U);
}

TEST_F(StatusRefreshCoordinatorTest, AForcedPassReplacesOneThatHangsForMoreThanAMinute)
{
    makeWaitForAnswers();
    start();
    clock_.advance(59s);
    http_.answer(0, HttpResponse{200, ""}); // the second request hangs
    clock_.advance(1s);
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(http_.requests().size(), 2U);
    clock_.advance(5s);
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(http_.requests().size(), 3U);
    EXPECT_EQ(http_.waiting(), 1U);
}

TEST_F(StatusRefreshCoordinatorTest, AKickFromInsideALateCheckGivesUpItsPassOnlyAfterwards)
{
    makeWaitForAnswers();
    start();
    int found = 0;
    const auto observation = sites_->hasPendingSiteUpdate().observe([&](bool isPending) {
        found += isPending ? 1 : 0;
        coordinator_->forceKick();
    });
    clock_.advance(59s);
    http_.answer(0, HttpResponse{200, ""});
    http_.answer(1, HttpResponse{200, ""});
    http_.answer(2, HttpResponse{200, R"([{"service":"s","url":"u","description":"d"}])"});
    http_.answer(3, std::unexpected(Error{}));
    clock_.advance(2s);
    http_.answer(4, std::unexpected(Error{}));
    EXPECT_EQ(found, 1);
    EXPECT_EQ(kindOf(http_.requests().back()), "mac_whatsnew/whatsnew.html") << "the pass went on";
    queue_.runAll();
    EXPECT_EQ(http_.requests().size(), 7U);
    EXPECT_EQ(http_.waiting(), 1U);
    EXPECT_FALSE(http_.answer(5, HttpResponse{200, "<p>"}));
}

TEST_F(StatusRefreshCoordinatorTest, AManagerThatIsGoneIsLeftOutAndStaysDue)
{
    app_.reset();
    start();
    EXPECT_EQ(ran(), "1 1 0");
    clock_.advance(60s);
    EXPECT_EQ(ran(), "1 1 0");
    app_ = std::make_shared<AppUpdateManager>(http_, clock_, endpoints_, AppInfo{});
    start();
    EXPECT_EQ(ran(), "1 1 0");
    clock_.advance(60s);
    EXPECT_EQ(ran(), "1 1 1");

    sites_.reset();
    clock_.advance(5s);
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(ran(), "2 1 2");
}

TEST_F(StatusRefreshCoordinatorTest, APassKeepsItsManagersUntilItEnds)
{
    makeWaitForAnswers();
    start();
    const std::weak_ptr<SiteListManager> weak = sites_;
    sites_.reset();
    app_.reset();
    settings_.reset();
    answerEverything();
    EXPECT_EQ(ran(), "1 1 1");
    EXPECT_TRUE(weak.expired());
}

TEST_F(StatusRefreshCoordinatorTest, AsksForTheListWhereTheSettingsSay)
{
    const auto askedForList = [this] {
        std::string address;
        for (const auto& request : http_.requests()) {
            if (kindOf(request) == "sites.json")
                address = request.url.text();
        }
        return address.substr(0, address.find('?'));
    };
    start();
    EXPECT_EQ(askedForList(), "http://p/Corvane/sites/sites.json");
    auto changed = *settings_->settings();
    changed.SitesSourceUrl = "http://own/sites.json";
    settings_->updateSettings(changed);
    clock_.advance(5s);
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(askedForList(), "http://own/sites.json");
    settings_.reset();
    clock_.advance(5s);
    coordinator_->forceKick();
    queue_.runAll();
    EXPECT_EQ(askedForList(), "http://p/Corvane/sites/sites.json");
}

TEST_F(StatusRefreshCoordinatorTest, EndsWithEverythingItStarted)
{
    makeWaitForAnswers();
    for (const std::size_t answers : {0U, 2U, 5U, 6U}) {
        const auto before = http_.requests().size();
        coordinator_ =
            std::make_unique<StatusRefreshCoordinator>(pushDevices_, clock_, queue_, wake_, [this] { return draw_; });
        start();
        for (std::size_t i = 0; i < answers; ++i)
            http_.answer(before + i, respond(http_.requests()[before + i]));
        coordinator_->forceKick();
        coordinator_.reset();
        EXPECT_EQ(http_.waiting(), 0U);
        EXPECT_EQ(clock_.pendingTimers(), 0U);
        EXPECT_EQ(wake_.observers(), 0U);
        EXPECT_TRUE(queue_.isEmpty());
    }
}

} // namespace
} // namespace corvane
