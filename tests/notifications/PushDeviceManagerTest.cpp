#include "notifications/PushDeviceManager.h"

#include "async/TaskScope.h"
#include "support/MemoryDefaultsStore.h"
#include "support/ScriptedHttpClient.h"

#include <map>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Answer = Result<HttpResponse>;
using Ids = std::vector<std::int64_t>;

const std::string base = "http://server.test:3002/";
const Answer noNetwork = std::unexpected(Error{"No route to host"});

Endpoints endpoints()
{
    std::vector<std::string> refused;
    return Endpoints::read(
        [](const char* name) {
            return name == std::string_view("CORVANE_NOTIFICATION_URL") ? std::optional(base) : std::nullopt;
        },
        refused);
}

std::string listing(const Ids& ids)
{
    Json list = Json::array();
    for (const auto id : ids)
        list.push_back({{"recipientId", id}});
    return compactJson({{"notifications", list}});
}

Task<void> keepResult(Task<std::int64_t> task, std::optional<std::int64_t>* result)
{
    *result = co_await std::move(task);
}

Answer status(int number, std::string body = "")
{
    return HttpResponse{number, std::move(body)};
}

class PushDeviceManagerTest : public ::testing::Test {
protected:
    PushDeviceManagerTest()
    {
        defaults.setString("push_install_id", "me & you");
        http.respond = [this](const HttpRequest& request) { return answerFor(request); };
    }

    /// Endpoint by endpoint; "{}" with status 200 where nothing else is set.
    Answer answerFor(const HttpRequest& request) const
    {
        const auto found = answers.find(std::string(request.url.path().substr(1)));
        return found == answers.end() ? Answer(HttpResponse{200, "{}"}) : found->second;
    }

    /// Empty while the cycle still waits.
    std::optional<std::int64_t> refresh()
    {
        refreshed.reset();
        scope.start(keepResult(manager.refresh(), &refreshed));
        return refreshed;
    }

    void fill(const Ids& ids)
    {
        answers[pendingPath] = status(200, listing(ids));
        ASSERT_EQ(refresh(), std::int64_t(ids.size()));
    }

    Ids pendingIds() const
    {
        Ids ids;
        for (const auto& notification : *manager.pending())
            ids.push_back(notification.recipientId);
        return ids;
    }

    /// The paths requested since the last call, each with its JSON body.
    std::vector<std::pair<std::string, Json>> newRequests()
    {
        std::vector<std::pair<std::string, Json>> fresh;
        for (; seen < http.requests().size(); ++seen) {
            const auto& request = http.requests()[seen];
            fresh.emplace_back(request.url.path().substr(1), request.body.empty() ? Json() : *parseJson(request.body));
        }
        return fresh;
    }

    std::optional<std::string> token() const { return defaults.string("push_binding_token"); }

    const std::string registerPath = "api/devices/register";
    const std::string bindPath = "api/devices/bind";
    const std::string pendingPath = "api/notifications/pending";
    const std::string ackPath = "api/notifications/ack";

    testing::ScriptedHttpClient http;
    testing::MemoryDefaultsStore defaults;
    std::map<std::string, Answer> answers;
    std::size_t seen = 0;
    std::optional<std::int64_t> refreshed;
    PushDeviceManager manager{http, defaults, endpoints(), AppInfo{"1.2.0"}};
    TaskScope scope;
};

TEST_F(PushDeviceManagerTest, KeepsAnInstallIdentifierOfAnyFormButMakesANewOneForNone)
{
    EXPECT_EQ(manager.installId(), "me & you");
    for (const bool isEmpty : {true, false}) {
        isEmpty ? defaults.setString("push_install_id", "") : defaults.remove("push_install_id");
        const auto fresh = manager.installId();
        EXPECT_EQ(fresh.size(), 36U);
        EXPECT_EQ(manager.installId(), fresh);
        EXPECT_EQ(defaults.string("push_install_id"), fresh);
    }
}

TEST_F(PushDeviceManagerTest, ACycleRegistersBindsAndFetchesInThisOrder)
{
    defaults.setString("push_binding_token", "t");
    EXPECT_EQ(refresh(), 0);
    const Json registration = {
        {"installId", "me & you"}, {"platform", "macos"}, {"product", "corvane"}, {"appVersion", "1.2.0"}};
    const Json binding = {{"installId", "me & you"}, {"platform", "macos"}, {"bindingToken", "t"}};
    const std::vector<std::pair<std::string, Json>> expected{
        {registerPath, registration}, {bindPath, binding}, {pendingPath, Json()}};
    EXPECT_EQ(newRequests(), expected);

    const auto& post = http.requests()[0];
    EXPECT_EQ(post.method, HttpMethod::post);
    EXPECT_EQ(post.headers,
              (decltype(post.headers){{"Content-Type", "application/json"}, {"Accept", "application/json"}}));
    const auto& get = http.requests()[2];
    EXPECT_EQ(get.method, HttpMethod::get);
    EXPECT_EQ(get.url.text(), base + "api/notifications/pending?installId=me%20%26%20you");
    EXPECT_EQ(get.headers, (decltype(get.headers){{"Accept", "application/json"}}));
}

TEST_F(PushDeviceManagerTest, RegistersAgainWhateverTheServerSaid)
{
    for (const Answer& answer : {noNetwork, status(500), status(403, "push_registration_disabled")}) {
        answers[registerPath] = answer;
        fill({5});
        EXPECT_EQ(newRequests().front().first, registerPath);
    }
}

TEST_F(PushDeviceManagerTest, SendsTheBindingTokenInEveryCycleUntilTheServerHasSettledIt)
{
    for (const auto& settling : {status(200), status(299), status(401), status(403)}) {
        defaults.setString("push_binding_token", "t");
        for (const auto& unsettling : {status(500), status(404), status(300), status(199), noNetwork}) {
            answers[bindPath] = unsettling;
            refresh();
            EXPECT_EQ(newRequests()[1].first, bindPath);
            EXPECT_EQ(token(), "t") << (unsettling ? unsettling->status : 0);
        }
        answers[bindPath] = settling;
        refresh();
        EXPECT_EQ(token(), std::nullopt) << settling->status;
        newRequests();
    }
}

TEST_F(PushDeviceManagerTest, AnAnswerForAnOlderTokenLeavesANewerOneToBeSent)
{
    http.respond = nullptr;
    defaults.setString("push_binding_token", "old");
    refresh();
    http.answer(0, status(200));
    scope.start(manager.bind("new"));
    http.answer(1, status(200));
    EXPECT_EQ(token(), "new");
    http.answer(2, status(200));
    EXPECT_EQ(parseJson(http.requests().back().body)->at("bindingToken"), "new");
}

TEST_F(PushDeviceManagerTest, BindingStoresTheTrimmedTokenAndRunsACycleButBlankOnesDoNothing)
{
    answers[bindPath] = noNetwork;
    scope.start(manager.bind(" \n to ken\t\r\n"));
    EXPECT_EQ(token(), "to ken");
    EXPECT_EQ(newRequests().size(), 3U);
    for (const auto& blank :
         {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>(" \n\t\u00A0")}) {
        scope.start(manager.bind(blank));
        EXPECT_EQ(token(), "to ken");
    }
    EXPECT_TRUE(newRequests().empty());
}

TEST_F(PushDeviceManagerTest, KeepsTheOldListWhenTheFetchFails)
{
    fill({4, 9});
    for (const Answer& answer :
         {noNetwork, status(204), status(200, "<html>"), status(404, listing({1})), status(302, listing({1}))}) {
        answers[pendingPath] = answer;
        EXPECT_EQ(refresh(), -1);
        EXPECT_EQ(pendingIds(), (Ids{9, 4}));
    }
    answers[pendingPath] = status(200, "[]");
    EXPECT_EQ(refresh(), 0);
    EXPECT_TRUE(pendingIds().empty());
}

TEST_F(PushDeviceManagerTest, AcknowledgesEachPositiveIdOnceAndNothingForNone)
{
    scope.start(manager.acknowledge({0}));
    scope.start(manager.acknowledge({}));
    scope.start(manager.acknowledgeAll());
    EXPECT_TRUE(newRequests().empty());

    scope.start(manager.acknowledge({5, 5, 0, -3}));
    const Json body = {{"installId", "me & you"}, {"recipientIds", {5}}};
    EXPECT_EQ(newRequests(), (std::vector<std::pair<std::string, Json>>{{ackPath, body}}));

    fill({4, 9});
    newRequests();
    scope.start(manager.acknowledgeAll());
    EXPECT_EQ(newRequests().front().second["recipientIds"], (Json{4, 9}));
    EXPECT_TRUE(pendingIds().empty());
}

TEST_F(PushDeviceManagerTest, TakesAcknowledgedOnesOffTheListUnlessTheServerDisagrees)
{
    for (const auto& agreeing : {status(200, R"({"acked":1})"), status(201, R"({"acked":"2"})"), status(200, "{}"),
                                 status(200, "[0]"), status(200, "OK"), status(204)}) {
        fill({4, 7, 9});
        answers[ackPath] = agreeing;
        scope.start(manager.acknowledge({9, 4}));
        EXPECT_EQ(pendingIds(), Ids{7}) << agreeing->body;
    }
    fill({4, 9});
    for (const auto& disagreeing : {noNetwork, status(200, R"({"acked":0})"), status(200, R"({"acked":null})"),
                                    status(200, R"({"acked":0.9})"), status(500, R"({"acked":2})"), status(302)}) {
        answers[ackPath] = disagreeing;
        scope.start(manager.acknowledge({9, 4}));
        EXPECT_EQ(pendingIds(), (Ids{9, 4})) << (disagreeing ? disagreeing->body : "no network");
    }
}

TEST_F(PushDeviceManagerTest, AnAcknowledgementAppliesToTheListAsItIsWhenItsAnswerArrives)
{
    fill({4, 7});
    http.respond = nullptr;
    scope.start(manager.acknowledge({4}));
    const auto acknowledgement = http.requests().size() - 1;
    http.respond = [this](const HttpRequest& request) { return answerFor(request); };
    fill({4, 8});
    http.answer(acknowledgement, status(200));
    EXPECT_EQ(pendingIds(), Ids{8});
}

TEST_F(PushDeviceManagerTest, CancelledTasksChangeNothingAndLeaveLaterOnesFree)
{
    fill({4});
    defaults.setString("push_binding_token", "t");
    for (std::size_t answered = 0; answered < 3; ++answered) {
        http.respond = nullptr;
        const auto first = http.requests().size();
        refresh();
        for (std::size_t i = 0; i < answered; ++i)
            http.answer(first + i, status(500));
        scope.cancel();
        EXPECT_FALSE(http.answer(first + answered, status(200, listing({1}))));
    }
    scope.start(manager.acknowledge({4}));
    scope.cancel();
    EXPECT_EQ(http.waiting(), 0U);
    EXPECT_EQ(pendingIds(), Ids{4});
    EXPECT_EQ(token(), "t");

    http.respond = [this](const HttpRequest& request) { return answerFor(request); };
    fill({6});
}

TEST_F(PushDeviceManagerTest, NamesItsVersionInTheRegistrationPageWhenThereIsOne)
{
    for (const auto& [version, query] : std::vector<std::pair<std::string, std::string>>{
             {"1.2.0", "os=macos&version=1.2.0"}, {"", "os=macos"}, {"1 #β", "os=macos&version=1%20%23%CE%B2"}}) {
        const PushDeviceManager named(http, defaults, endpoints(), AppInfo{version});
        EXPECT_EQ(named.registrationPageURL().text(), (base + "registration.html?").append(query));
    }
}

} // namespace
} // namespace corvane
