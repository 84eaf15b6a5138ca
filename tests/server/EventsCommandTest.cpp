#include "commands/EventsCommand.h"

#include "store/EventStore.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace corvane::server::testing {
namespace {

UsageEvent menuClick(const std::string& label)
{
    return {.receivedAt = std::chrono::sys_seconds(std::chrono::seconds(1'700'000'000)),
            .measurementId = "G-A1B2C3D4E5",
            .clientId = "1.2_rel",
            .sessionId = 1'699'999'999,
            .sequence = 7,
            .name = "menu_click",
            .parameters = {{"event_label", label}, {"seconds", 42}},
            .userProperties = {{"app_version", "0.75.0"}},
            .userAgent = "Corvane"};
}

TEST(EventsCommandTest, PrintsOneLineAnEventThatIsSafeForATerminal)
{
    auto database = Database::inMemory();
    EXPECT_EQ(listEvents(database, EventForm::line), "");
    const std::vector<std::pair<std::string, std::string>> labels{{"Help", "Help"},
                                                                  {"Grüße", "Grüße"},
                                                                  {"Check for \"it\"", R"("Check for \"it\"")"},
                                                                  {"", "\"\""},
                                                                  {"two\nlines\x1B[2J\xC2\x9B"
                                                                   "2J\xE2\x80\xAE",
                                                                   "twolines[2J2J"},
                                                                  {std::string(5000, 'x'), std::string(300, 'x')}};
    std::string expected;
    for (const auto& [label, shown] : labels) {
        EventStore(database).add(std::vector{menuClick(label)});
        expected += "2023-11-14T22:13:20Z  1.2_rel  7  menu_click  event_label=" + shown + " seconds=42\n";
    }
    EventStore(database).add(std::vector{UsageEvent{.clientId = "1", .sequence = 1, .name = "end"}});
    EXPECT_EQ(listEvents(database, EventForm::line), expected + "1970-01-01T00:00:00Z  1  1  end\n");
}

TEST(EventsCommandTest, PrintsEverythingAsJson)
{
    auto database = Database::inMemory();
    EventStore(database).add(std::vector{menuClick("ü\n\xC2\x9B"), menuClick("Help")});
    const auto lines = listEvents(database, EventForm::json);
    EXPECT_EQ(std::ranges::count(lines, '\n'), 2);
    EXPECT_TRUE(std::ranges::all_of(lines, [](char c) { return c == '\n' || (c >= ' ' && c < '\x7F'); }));
    EXPECT_EQ(parseJson(lines.substr(0, lines.find('\n'))),
              parseJson(R"({"time": "2023-11-14T22:13:20Z", "measurementId": "G-A1B2C3D4E5", "clientId": "1.2_rel",
                            "sessionId": 1699999999, "sequence": 7, "event": "menu_click",
                            "parameters": {"event_label": "ü\n\u009b", "seconds": 42},
                            "userProperties": {"app_version": "0.75.0"}, "userAgent": "Corvane"})"));
}

} // namespace
} // namespace corvane::server::testing
