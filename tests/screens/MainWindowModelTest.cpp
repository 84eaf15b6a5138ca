#include "screens/MainWindowModel.h"

#include "analytics/AnalyticsManager.h"
#include "notifications/PushDeviceManager.h"
#include "screens/ActivationModel.h"
#include "screens/KeyPress.h"
#include "screens/ToolbarModel.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

/// A window with a stored first-use flag and a stored choice.
struct World {
    World(bool isFirstUse, std::string_view choice)
    {
        defaults.setBoolean("FirstUse", isFirstUse);
        defaults.setString("siteIndex", choice);
        state.emplace(defaults, analytics);
        model.emplace(*state, pushDevices, defaults, analytics);
        toolbar.emplace(*state, pushDevices, endpoints, analytics);
        analytics.adoptEnabled(true);
    }

    MemoryDefaultsStore defaults;
    FixedHostInfo host;
    ManualClock clock;
    ScriptedHttpClient http;
    AppInfo info{.shortVersion = "1.2"};
    Endpoints endpoints = endpointsAt();
    AnalyticsManager analytics{defaults, host, clock, info};
    PushDeviceManager pushDevices{http, defaults, endpoints, info};
    std::optional<AppState> state;
    std::optional<MainWindowModel> model;
    std::optional<ToolbarModel> toolbar;
};

TEST(MainWindowModelTest, OpensWithTheRememberedServiceOrTheRegistrationPage)
{
    const std::vector<Site> sites{
        {"Echo", "https://echo.example/", ""}, {"Script", "javascript:x", ""}, {"Bad", "::", ""}};
    const std::string registration = "http://127.0.0.1:3002/registration.html?os=macos&version=1.2";
    EXPECT_EQ(World(false, "Echo").model->initialURL(sites).text(), "https://echo.example/");
    EXPECT_EQ(World(true, "Echo").model->initialURL(sites).text(), registration);
    for (const auto* choice : {"Gone", "Script", "Bad", ""})
        EXPECT_EQ(World(false, choice).model->initialURL(sites).text(), registration) << choice;
}

TEST(MainWindowModelTest, SwitchesURLModeOutsideFirstUseOnly)
{
    World firstUse(true, "");
    firstUse.model->toggleURLMode();
    EXPECT_FALSE(*firstUse.state->isURLMode);
    World later(false, "");
    later.model->toggleURLMode();
    EXPECT_TRUE(*later.state->isURLMode);
    later.model->toggleURLMode();
    EXPECT_FALSE(*later.state->isURLMode);
}

TEST(MainWindowModelTest, HearsTheProgramsNotifications)
{
    NotificationCenter notifications;
    {
        World world(false, "");
        world.model->observe(notifications);
        notifications.post("Corvane.toggleURLMode");
        notifications.post("Corvane.showAbout");
        EXPECT_TRUE(*world.state->isURLMode);
        EXPECT_TRUE(*world.state->showAbout);
    }
    notifications.post("Corvane.toggleURLMode"); // Nobody is left to hear it.
}

TEST(ActivationModelTest, CountsComingBackOnceAndDialogsNot)
{
    ManualMainQueue queue;
    bool isActive = false;
    int activations = 0;
    ActivationModel model(queue, [&] { return isActive; }, [&] { ++activations; });
    const auto move = [&](bool activeAfterwards) {
        model.focusMoved(); // one window loses the focus
        isActive = activeAfterwards;
        model.focusMoved(); // another may gain it
        queue.runAll();
    };
    move(true);
    EXPECT_EQ(activations, 1);
    move(true); // a dialog opens
    move(true); // and closes
    EXPECT_EQ(activations, 1);
    move(false);
    move(true);
    EXPECT_EQ(activations, 2);
}

TEST(MainWindowModelTest, ShowsTitlesThatCannotDeceive)
{
    World world(false, "");
    EXPECT_EQ(world.model->windowTitle(), "Corvane");
    world.state->title.set("a\nb\u202Ec\u0007");
    EXPECT_EQ(world.model->windowTitle(), "abc");
    world.state->title.set("\u202E \n");
    EXPECT_EQ(world.model->windowTitle(), "Corvane");
    std::string umlauts;
    for (int i = 0; i < 400; ++i)
        umlauts += "ä";
    world.state->title.set(umlauts);
    EXPECT_EQ(world.model->windowTitle().size(), 600U);
}

TEST(ToolbarModelTest, TurnsButtonsAndMenuEntriesIntoRequests)
{
    World world(false, "");
    EXPECT_FALSE(*world.toolbar->isEnabled(WebViewAction::goBack));
    world.state->canGoBack.set(true);
    EXPECT_TRUE(*world.toolbar->isEnabled(WebViewAction::goBack));
    EXPECT_TRUE(*world.toolbar->isEnabled(WebViewAction::goHome));
    EXPECT_FALSE(*world.toolbar->isEnabled(WebViewAction::stop));

    std::vector<std::string> labels;
    for (const auto& button : ToolbarModel::buttons) {
        world.toolbar->press(button);
        EXPECT_EQ(*world.state->pendingAction, button.action);
    }
    for (const auto& event : world.analytics.preInitQueue())
        labels.push_back(std::get<std::string>(event.params.at("event_label")));
    EXPECT_EQ(labels, (std::vector<std::string>{"Back", "Home", "Forward", "Reload", "Cancel"}));

    for (const auto& entry : ToolbarModel::menu) {
        world.toolbar->choose(entry);
        EXPECT_TRUE(
            (*world.state->pendingLoadURL)->text().contains(entry.title == "Help" ? "help/mac" : "registration"));
    }
}

TEST(KeyPressTest, TogglesURLModeByExactlyControlShiftU)
{
    EXPECT_TRUE((KeyPress{.character = U'u', .shift = true, .control = true}.togglesURLMode()));
    EXPECT_FALSE((KeyPress{.character = U'u', .control = true}.togglesURLMode()));
    EXPECT_FALSE((KeyPress{.character = U'u', .shift = true, .control = true, .alternate = true}.togglesURLMode()));
    EXPECT_FALSE((KeyPress{.character = U'u', .shift = true, .command = true}.togglesURLMode()));
    EXPECT_FALSE((KeyPress{.character = U'г', .shift = true, .control = true}.togglesURLMode()));
    EXPECT_FALSE((KeyPress{.shift = true, .control = true}.togglesURLMode()));
}

} // namespace
} // namespace corvane::testing
