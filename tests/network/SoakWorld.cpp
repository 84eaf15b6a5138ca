#include "network/SoakWorld.h"

#include "base/Text.h"
#include "support/MainContext.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace corvane::testing {
namespace {

using namespace std::chrono_literals;
using Scheduler = StatusRefreshCoordinator;

constexpr auto pendingPath = "/api/notifications/pending";
constexpr auto sitesPath = "/Corvane/sites/sites.json";
constexpr auto notesPath = "/Corvane/mac_whatsnew/whatsnew.html";

/// How far a time lies after the start, in hours and minutes.
std::string told(Clock::TimePoint time)
{
    const auto minutes = std::chrono::floor<std::chrono::minutes>(time.time_since_epoch()).count();
    return fmt::format("{}:{:02}", minutes / 60, minutes % 60);
}

Endpoints endpointsAtServer(const RawServer& server)
{
    const auto base = server.url("/").text();
    auto endpoints = endpointsAt(base, base);
    endpoints.storeLookup = server.url("/lookup");
    return endpoints;
}

} // namespace

Task<Result<HttpResponse>> WatchedHttpClient::send(HttpRequest request)
{
    const std::string path(request.url.path());
    ++waiting;
    auto response = co_await inner_.send(std::move(request));
    --waiting;
    failures += response && response->isSuccess() ? 0 : 1;
    latest.insert_or_assign(path, response);
    co_return response;
}

Task<Result<int>> WatchedHttpClient::download(Url url, ByteSink* sink, DownloadObserver observer)
{
    auto status = co_await inner_.download(std::move(url), sink, std::move(observer));
    co_return status;
}

SoakWorld::SoakWorld(unsigned seed)
    : random_(seed), endpoints_(endpointsAtServer(server_)), devices_(http_, defaults_, endpoints_, AppInfo{"1.0", ""}),
      sites_(
          std::make_shared<SiteListManager>(files_, resources_, places_, SiteListFetcher(http_, clock_, endpoints_))),
      app_(std::make_shared<AppUpdateManager>(http_, clock_, endpoints_, AppInfo{"1.0", ""})),
      settings_(std::make_shared<SettingsManager>(files_, places_)),
      checks_{Check{"notifications", pendingPath, Scheduler::notifyInterval},
              Check{"list", sitesPath, Scheduler::sitesInterval}, Check{"version", notesPath, Scheduler::appInterval}},
      coordinator_(devices_, clock_, queue_, wake_, [this] { return random_(); })
{
    faults_ = allFaults();
    std::erase_if(faults_, [](const Fault& fault) {
        const bool fails = fault.arrives == Fault::Arrives::nothing || fault.status < 200 || fault.status > 299;
        return !fails || fault.lasts != Fault::Lasts::briefly;
    });
    documents_ = {{pendingPath, R"({"notifications":[{"recipientId":7,"title":"t"}]})"},
                  {sitesPath, R"([{"service":"A","url":"u","description":"d"}])"},
                  {notesPath, "<p>{{VERSION}}"},
                  {"/lookup", R"({"results":[{"version":"2.0"}]})"}};
    server_.respond = [this](const std::string& request) { return answer(request); };
}

RawServer::Reply SoakWorld::answer(const std::string& request)
{
    ++requests_;
    const auto document = documents_.find(FaultyServer::pathOf(request));
    const auto good = document == documents_.end() ? "{}" : document->second;
    if (random_() % 3 != 0)
        return RawServer::ok(good);
    return faults_[random_() % faults_.size()].reply(good, request);
}

bool SoakWorld::live(std::chrono::hours time)
{
    const bool isFirst = requests_ == 0;
    if (isFirst)
        coordinator_.start(sites_, app_, settings_);
    if (isFirst && !settle())
        return false;
    for (auto left = std::chrono::seconds(time); left > 0s; left -= Scheduler::tickInterval) {
        clock_.advance(Scheduler::tickInterval);
        if (!settle())
            return false;
    }
    return true;
}

/// Waits until the pass that has begun, if any, is over, and looks at what has run.
bool SoakWorld::settle()
{
    const bool hasEnded =
        iterateUntil([this] { return http_.waiting == 0 && g_main_context_pending(nullptr) == FALSE; });
    for (auto& check : checks_)
        examine(check, clock_.now());
    http_.latest.clear();
    server_.requests.clear();
    return hasEnded;
}

bool SoakWorld::hasSucceeded(const Check& check, const Result<HttpResponse>& response) const
{
    if (!response)
        return false;
    if (check.path == pendingPath)
        return response->isSuccess() && decodePending(response->body).has_value();
    if (check.path == notesPath)
        return !response->body.empty() && isValidUtf8(response->body);
    return response->body.ends_with(documents_.at(check.path)); // a byte order mark may stand in front
}

void SoakWorld::examine(Check& check, TimePoint now)
{
    const auto response = http_.latest.find(check.path);
    const bool hasRun = response != http_.latest.end();
    const bool isInTime = now >= check.earliest && now <= check.latest;
    const bool isLate = now >= check.latest;
    if (check.runs > 0 && (hasRun ? !isInTime : isLate) && surprises_.size() < 10)
        surprises_.push_back(fmt::format("{} {} at {}, expected from {} to {}", check.name,
                                         hasRun ? "ran" : "did not run", told(now), told(check.earliest),
                                         told(check.latest)));
    if (!hasRun)
        return;
    ++check.runs;
    const bool succeeded = hasSucceeded(check, response->second);
    const auto spread = succeeded ? check.interval * 15 / 100 : 0s;
    const auto period = succeeded ? check.interval : Scheduler::retryInterval;
    check.earliest = now + period - spread;
    check.latest = now + period + spread + (succeeded ? Scheduler::tickInterval : 0s);
}

std::array<std::uint64_t, 3> SoakWorld::checks() const
{
    return {checks_[0].runs, checks_[1].runs, checks_[2].runs};
}

} // namespace corvane::testing
