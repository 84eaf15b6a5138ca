#include "updates/UpdateChoice.h"

#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(UpdateChoiceTest, TheNewestWinsAndTheStoreOnATie)
{
    using Version = std::optional<std::string>;
    struct Case {
        Version hosted, store;
        std::string_view expected;
    };
    for (const auto& [hosted, store, expected] : std::vector<Case>{
             {{}, {}, "none"},
             {"1.3", {}, "hosted 1.3"},
             {"1.2", {}, "none"},
             {"1.1", {}, "none"},
             {{}, "1.3", "store 1.3"},
             {{}, "1.2.0", "none"},
             {"1.3", "1.2", "hosted 1.3"},
             {"1.2", "1.3", "store 1.3"},
             {"1.3", "1.3", "store 1.3"},
             {"1.3", "1.3.0", "store 1.3.0"},
             {"1.4", "1.3", "hosted 1.4"},
             {"1.3", "1.4", "store 1.4"},
             {"1.1", "0.9", "none"},
             {"beta", "", "none"},
         }) {
        const auto file = hosted ? std::optional(HostedVersion{.version = *hosted}) : std::nullopt;
        const auto choice = chooseUpdate("1.2", file, store);
        EXPECT_EQ(choice ? (choice->isHosted ? "hosted " : "store ") + choice->version : "none", expected)
            << hosted.value_or("-") << " " << store.value_or("-");
    }
}

} // namespace
} // namespace corvane
