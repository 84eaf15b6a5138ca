#include "ports/Endpoints.h"

#include <map>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(EndpointsTest, TakesGoodOverridesAndNamesBadOnes)
{
    const std::map<std::string, std::string> environment{{"CORVANE_PUBLISHING_URL", "https://publish.example/base"},
                                                         {"CORVANE_NOTIFICATION_URL", "file:///etc/passwd"},
                                                         {"CORVANE_COLLECT_URL", "not an address"},
                                                         {"CORVANE_DONATION_URL", "http://donate.example/#x"},
                                                         {"CORVANE_TAG_URL", ""}};
    std::vector<std::string> refused;
    const auto endpoints = Endpoints::read(
        [&](const char* name) {
            const auto found = environment.find(name);
            return found == environment.end() ? std::nullopt : std::optional(found->second);
        },
        refused);

    EXPECT_EQ(endpoints.helpPage().text(), "https://publish.example/base/Corvane/help/mac/help_mac_v0.75.xx.html");
    EXPECT_EQ(endpoints.privacyPage().text(), "https://publish.example/base/Corvane/privacypolicy.html");
    EXPECT_EQ(endpoints.privacyUsagePage().text(), endpoints.privacyPage().text() + "#usagedata");
    EXPECT_EQ(endpoints.notification.text(), "http://127.0.0.1:3002/");
    EXPECT_EQ(endpoints.tag.path(), "/gtag/js");
    EXPECT_EQ(refused,
              (std::vector<std::string>{"CORVANE_NOTIFICATION_URL", "CORVANE_COLLECT_URL", "CORVANE_DONATION_URL"}));
}

TEST(EndpointsTest, NamesTheDonationAccountSafelyWhateverItsCharacters)
{
    std::vector<std::string> refused;
    auto endpoints = Endpoints::read(
        [](std::string_view name) {
            return name == "CORVANE_DONATION_URL" ? std::optional<std::string>("https://give.example/") : std::nullopt;
        },
        refused);
    for (const auto& [account, written] : std::vector<std::pair<std::string, std::string>>{
             {"A1B2", "A1B2"}, {"a@b.example", "a%40b.example"}, {"x&amount=1#", "x%26amount%3D1%23"}}) {
        endpoints.donationAccount = account;
        EXPECT_EQ(endpoints.donationPage().text(),
                  "https://give.example/donate/?business=" + written + "&no_recurring=0&currency_code=USD");
    }
}

} // namespace
} // namespace corvane
