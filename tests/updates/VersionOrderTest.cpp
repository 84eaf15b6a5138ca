#include "updates/VersionOrder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(VersionOrderTest, TheFirstPlaceThatDiffersDecides)
{
    struct Case {
        std::string_view newer, older;
    };
    for (const auto& [newer, older] : std::vector<Case>{
             {"1.10", "1.9"},
             {"2", "1.99.99"},
             {"1.2.1", "1.2.3-beta"}, // which counts as 1.2
             {"2.5", "2.x.4"},        // which counts as 2.4
             {"1.2.0.1", "1.2"},
             {"0.0.1", ""},
             {"0.0.1", "none"},
             {"0", "-1"},
             {"1.+3", "1.2"},
             {"1..3", "1.2"},
             {".1.3.", "1.2.9"},
             {"9223372036854775807", "9223372036854775806"},
             {"1.2", "1.9223372036854775808.1"}, // which overflows and is left out
             {"1.2", "1.-9223372036854775808"},
         }) {
        EXPECT_TRUE(isVersionNewer(newer, older)) << newer << " " << older;
        EXPECT_FALSE(isVersionNewer(older, newer)) << newer << " " << older;
    }
}

TEST(VersionOrderTest, NothingIsNewerThanItsEqual)
{
    const std::vector<std::vector<std::string_view>> groups{
        {"1.2", "1.2.0", "1.2.0.0", "01.002", "+1.+2", "1.2.rc-1", "v.1.2", "1.2. 3"},
        {"", ".", "...", "beta", "0", "0.0", "-0", "1a", "0x10", "1e3"},
    };
    for (const auto& group : groups) {
        for (const auto a : group) {
            for (const auto b : group)
                EXPECT_FALSE(isVersionNewer(a, b)) << a << " " << b;
        }
    }
}

} // namespace
} // namespace corvane
