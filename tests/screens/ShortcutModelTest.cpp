#include "screens/ShortcutModel.h"

#include "screens/ScreenWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using Named = KeyPress::Named;
using Place = ShortcutModel::Place;

class ShortcutModelTest : public ::testing::Test {
protected:
    /// What a key does at a place: a word for each thing that happened, "-" for a key that is not ours.
    std::string press(const KeyPress& key, Place place)
    {
        state.pendingAction.set(std::nullopt);
        world.selector->urlFieldFocusRequested.set(false);
        done.clear();
        const bool isOurs = model.press(key, place);
        if (*state.pendingAction)
            done += std::array{"back", "forward", "reload", "stop", "home"}.at(
                static_cast<std::size_t>(**state.pendingAction));
        if (*world.selector->urlFieldFocusRequested)
            done += "address";
        if (world.takePending() == world.endpoints.helpPage().text())
            done += "help";
        return isOurs ? done : "-" + done;
    }

    ScreenWorld world;
    AppState& state = *world.state;
    std::string done;
    ShortcutModel model{state, *world.toolbar, *world.selector, [this] { done += "toggle"; }};

    const KeyPress left{.named = Named::left, .alternate = true};
    const KeyPress right{.named = Named::right, .alternate = true};
    const KeyPress home{.named = Named::home, .alternate = true};
    const KeyPress f5{.named = Named::f5};
    const KeyPress reload{.character = U'r', .control = true};
    const KeyPress address{.character = U'l', .control = true};
    const KeyPress help{.named = Named::f1};
    const KeyPress escape{.named = Named::escape};
    const KeyPress toggle{.character = U'u', .shift = true, .control = true};
    const std::vector<KeyPress> all{left, right, home, f5, reload, address, help, escape, toggle};
};

TEST_F(ShortcutModelTest, EachKeyDoesItsWorkWhereItMay)
{
    struct Case {
        const char* what;
        bool isBusy;
        Place place;
        std::vector<std::string> expected; // in the order of `all`
    };
    for (const auto& [what, isBusy, place, expected] : std::vector<Case>{
             {"idle page", false, Place::window, {"", "", "home", "reload", "reload", "-", "help", "-", "toggle"}},
             {"idle field", false, Place::editing, {"", "", "home", "reload", "reload", "-", "help", "-", "toggle"}},
             {"busy page",
              true,
              Place::window,
              {"back", "forward", "home", "reload", "reload", "address", "help", "stop", "toggle"}},
             {"busy field",
              true,
              Place::editing,
              {"back", "forward", "home", "reload", "reload", "address", "help", "-", "toggle"}},
             {"dialog", true, Place::sheet, {"-", "-", "-", "-", "-", "-", "-", "-", "toggle"}},
         }) {
        for (auto* flag : {&state.canGoBack, &state.canGoForward, &state.isLoading, &state.isURLMode})
            flag->set(isBusy);
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_EQ(press(all[i], place), expected[i]) << what << ", key " << i;
    }
}

TEST_F(ShortcutModelTest, AKeyWithAnotherModifierIsNotOurs)
{
    for (auto* flag : {&state.canGoBack, &state.canGoForward, &state.isLoading, &state.isURLMode})
        flag->set(true);
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (const auto modifier : {&KeyPress::shift, &KeyPress::control, &KeyPress::alternate, &KeyPress::command}) {
            auto key = all[i];
            if (key.*modifier)
                continue;
            key.*modifier = true;
            EXPECT_EQ(press(key, Place::window), "-") << i;
        }
    }
    for (const auto& key :
         {KeyPress{}, KeyPress{.character = U'r'}, KeyPress{.named = Named::left}, KeyPress{.alternate = true},
          KeyPress{.character = U'u', .control = true}, KeyPress{.character = U'г', .shift = true, .control = true}})
        EXPECT_EQ(press(key, Place::window), "-");
}

TEST_F(ShortcutModelTest, KeysAreRecordedLikeTheButtonsAndEntriesThatTheyStandFor)
{
    press(left, Place::window); // disabled
    press(home, Place::editing);
    press(help, Place::window);
    EXPECT_EQ(world.takeEvents(), (std::vector<std::string>{"button_click Home", "menu_click Help"}));
}

} // namespace
} // namespace corvane::testing
