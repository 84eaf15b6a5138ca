#include "commands/NotifyCommand.h"

#include "commands/ProfilesCommand.h"
#include "server/ServerWorld.h"

namespace corvane::server::testing {
namespace {

class NotifyCommandTest : public ServerWorld {
protected:
    std::string notifyWith(const std::string& title, std::optional<std::string> profile = {})
    {
        CommandLine line;
        line.command = CommandLine::Command::notify;
        line.title = title;
        line.body = "first line\nsecond line";
        line.url = "https://example.org/";
        line.profile = std::move(profile);
        const auto done = notify(line, database_, now());
        return done ? *done : "refused: " + done.error().message;
    }

    Json acknowledge(const std::vector<std::int64_t>& ids, const std::string& id = installId)
    {
        return post("/api/notifications/ack", {{"installId", id}, {"recipientIds", ids}}).json();
    }

    std::vector<std::string> titles(const std::string& id = installId)
    {
        std::vector<std::string> all;
        for (const auto& one : pending(id))
            all.push_back(one.value("title", ""));
        return all;
    }

    using Titles = std::vector<std::string>;
};

TEST_F(NotifyCommandTest, ReachesEveryInstallUntilItAcknowledges)
{
    registerDevice();
    registerDevice(otherInstallId);
    EXPECT_EQ(notifyWith("Grüße"), "Sent to 2 installs in all.");

    const auto list = pending();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["title"], "Grüße");
    EXPECT_EQ(list[0]["body"], "first line\nsecond line");
    EXPECT_EQ(list[0]["url"], "https://example.org/");
    EXPECT_TRUE(list[0]["campaignId"].is_number_integer());

    const auto id = list[0]["recipientId"].get<std::int64_t>();
    EXPECT_EQ(acknowledge({id}), (Json{{"acked", 1}}));
    EXPECT_EQ(titles(), Titles{});
    EXPECT_EQ(titles(otherInstallId), Titles{"Grüße"});
}

TEST_F(NotifyCommandTest, AnAcknowledgementCountsOwnDeliveriesOnceAndMayBeRepeated)
{
    registerDevice();
    registerDevice(otherInstallId);
    notifyWith("one");
    const auto own = pending()[0]["recipientId"].get<std::int64_t>();
    const auto foreign = pending(otherInstallId)[0]["recipientId"].get<std::int64_t>();

    EXPECT_EQ(acknowledge({own, own, foreign, 999}), (Json{{"acked", 1}}));
    EXPECT_EQ(acknowledge({own}), (Json{{"acked", 1}})) << "the first answer may have been lost";
    EXPECT_EQ(acknowledge({foreign}), (Json{{"acked", 0}}));
    EXPECT_EQ(titles(otherInstallId), Titles{"one"});
}

TEST_F(NotifyCommandTest, AMessageToAProfileFollowsTheBinding)
{
    registerDevice();
    registerDevice(otherInstallId);
    const auto ada = makeProfile("Ada");
    const auto bob = makeProfile("Bob");
    bind(ada.bindingToken);

    EXPECT_EQ(notifyWith("to Ada", "Ada"), "Sent to 1 install bound to \"Ada\".");
    EXPECT_EQ(notifyWith("to Bob", "Bob"), "Sent to 0 installs bound to \"Bob\".");
    EXPECT_EQ(notifyWith("to Eve", "Eve"), "refused: there is no profile \"Eve\"");
    EXPECT_EQ(titles(), Titles{"to Ada"});
    EXPECT_EQ(titles(otherInstallId), Titles{});

    bind(bob.bindingToken);
    EXPECT_EQ(titles(), Titles{}) << "what was Ada's is not shown to Bob";
}

TEST_F(NotifyCommandTest, DeletingAProfileTakesWhatWasSentToItAlone)
{
    registerDevice();
    const auto ada = makeProfile("Ada");
    bind(ada.bindingToken);
    notifyWith("to all");
    notifyWith("to Ada", "Ada");
    EXPECT_EQ(titles(), (Titles{"to Ada", "to all"}));

    auto headers = ada.cookie;
    headers.emplace("Content-Type", "application/json");
    send("DELETE", "/api/profiles/me", "{}", headers);
    EXPECT_EQ(titles(), Titles{"to all"});
    EXPECT_EQ(listProfiles(database_), "Profiles: 0. Installs: 1, bound: 0.\n");
}

TEST_F(NotifyCommandTest, AnInstallGetsTheNewestHundredAndNothingFromBeforeItsTime)
{
    notifyWith("too early");
    registerDevice();
    for (int i = 1; i <= 101; ++i)
        notifyWith(std::to_string(i));
    const auto all = titles();
    ASSERT_EQ(all.size(), 100U);
    EXPECT_EQ(all.front(), "101");
    EXPECT_EQ(all.back(), "2");
}

TEST_F(NotifyCommandTest, RefusesWhatNoClientShouldShow)
{
    struct Case {
        std::string title, body, url;
        bool isGood;
    };
    const std::vector<Case> cases{
        {"Title", "", "", true},
        {" Title \n", "<b>bold</b>\r\n\tx", "mailto:a@b.c", true},
        {std::string(200, 'x'), std::string(Message::longestBody, 'x'), "http://127.0.0.1/", true},
        {"", "", "", false},
        {" \n", "", "", false},
        {std::string(201, 'x'), "", "", false},
        {"two\nlines", "", "", false},
        {"turned \xE2\x80\xAE round", "", "", false},
        {"broken \xFF", "", "", false},
        {"Title", "broken \xC3", "", false},
        {"Title", std::string(Message::longestBody + 1, 'x'), "", false},
        {"Title", "bell \a", "", false},
        {"Title", "", "javascript:alert(1)", false},
        {"Title", "", "file:///etc/passwd", false},
        {"Title", "", "not an address", false},
        {"Title", "", "https://example.org/" + std::string(Message::longestUrl, 'x'), false},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Message::checked(one.title, one.body, one.url).has_value(), one.isGood)
            << one.title.substr(0, 20) << "|" << one.body.substr(0, 20) << "|" << one.url.substr(0, 40);
}

} // namespace
} // namespace corvane::server::testing
