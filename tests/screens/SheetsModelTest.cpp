#include "screens/SheetsModel.h"

#include "screens/ScreenWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

/// Writes down what is shown, in one word each.
class SheetsModelTest : public ::testing::Test {
protected:
    static std::string named(const std::optional<SheetsModel::Presentation>& shown)
    {
        static constexpr std::array<const char*, 5> names{"about", "settings", "notifications", "notes ", "consent"};
        return shown ? names.at(static_cast<std::size_t>(shown->sheet)) + shown->context : "-";
    }

    std::vector<std::string> takeHistory()
    {
        world.queue.runAll();
        return std::exchange(history, {});
    }

    void showNotes(std::string id) { state.activeWhatsNew.set(WhatsNewContext{.id = std::move(id)}); }

    using History = std::vector<std::string>;

    ScreenWorld world;
    AppState& state = *world.state;
    SheetsModel& sheets = *world.sheets;
    History history;
    Subscription showing = sheets.shown().observe([this](const auto& shown) { history.push_back(named(shown)); });
};

TEST_F(SheetsModelTest, ShowsAndClosesEachInALaterTurnAndTakesItsRequestBack)
{
    EXPECT_TRUE(world.queue.isEmpty()) << "nothing is asked for, so nothing is to be done";
    struct Case {
        Sheet sheet;
        std::string name;
        Published<bool>* flag;
    };
    for (const auto& [sheet, name, flag] :
         {Case{Sheet::about, "about", &state.showAbout}, Case{Sheet::settings, "settings", &state.showSettings},
          Case{Sheet::notifications, "notifications", &state.showNotifications},
          Case{Sheet::analyticsConsent, "consent", &state.showAnalyticsConsent},
          Case{Sheet::whatsNew, "notes 1", {}}}) {
        flag != nullptr ? flag->set(true) : showNotes("1");
        EXPECT_TRUE(history.empty()) << name;
        EXPECT_EQ(takeHistory(), History{name});
        sheets.close(sheet);
        EXPECT_TRUE(history.empty()) << name;
        EXPECT_FALSE(flag != nullptr ? **flag : state.activeWhatsNew->has_value()) << name;
        EXPECT_EQ(takeHistory(), History{"-"});
    }
}

TEST_F(SheetsModelTest, OthersWaitInTheOrderAskedUnlessTheyAreNotWantedAnyMore)
{
    state.showAbout.set(true);
    EXPECT_EQ(takeHistory(), History{"about"});
    showNotes("1");
    state.showSettings.set(true);
    state.showNotifications.set(true);
    state.showAnalyticsConsent.set(true);
    state.showNotifications.set(false);
    showNotes("2"); // Keeps the place of those it replaces.
    EXPECT_EQ(takeHistory(), History{});
    sheets.close(Sheet::about);
    EXPECT_EQ(takeHistory(), (History{"-", "notes 2"}));
    state.showAbout.set(true); // Again: at the end.
    sheets.close(Sheet::whatsNew);
    EXPECT_EQ(takeHistory(), (History{"-", "settings"}));
    sheets.close(Sheet::settings);
    EXPECT_EQ(takeHistory(), (History{"-", "consent"}));
    sheets.close(Sheet::analyticsConsent);
    EXPECT_EQ(takeHistory(), (History{"-", "about"}));
}

TEST_F(SheetsModelTest, OneComesOrGoesInATurn)
{
    state.showAbout.set(true);
    state.showSettings.set(true);
    world.queue.runTurn();
    world.queue.runTurn();
    EXPECT_EQ(history, History{"about"});
    sheets.close(Sheet::about);
    world.queue.runTurn();
    EXPECT_EQ(history.back(), "-");
    world.queue.runTurn();
    EXPECT_EQ(history.back(), "settings");
}

TEST_F(SheetsModelTest, WhatIsAskedForAndTakenBackInOneTurnIsNeverSeen)
{
    state.showAbout.set(true);
    state.showAbout.set(false);
    EXPECT_EQ(takeHistory(), History{});

    showNotes("1");
    EXPECT_EQ(takeHistory(), History{"notes 1"});
    showNotes("2");
    showNotes("1");
    state.activeWhatsNew.set(std::nullopt);
    showNotes("1");
    EXPECT_EQ(takeHistory(), History{});
}

TEST_F(SheetsModelTest, OtherReleaseNotesTakeThePlaceOfThoseShown)
{
    showNotes("1");
    EXPECT_EQ(takeHistory(), History{"notes 1"});
    state.showSettings.set(true);
    showNotes("2");
    sheets.close(Sheet::whatsNew); // A click on the old ones, which are on their way out.
    EXPECT_EQ(takeHistory(), (History{"-", "notes 2"}));
    sheets.close(Sheet::whatsNew);
    EXPECT_EQ(takeHistory(), (History{"-", "settings"}));
}

TEST_F(SheetsModelTest, SomeoneWhoReactsMayAskForMore)
{
    const auto reacting = sheets.shown().observe([this](const auto& shown) {
        if (!shown)
            state.showNotifications.set(true);
        else if (shown->sheet == Sheet::about)
            sheets.close(Sheet::about);
    });
    state.showAbout.set(true);
    EXPECT_EQ(takeHistory(), (History{"about", "-", "notifications"}));
}

} // namespace
} // namespace corvane::testing
