#include "updates/InstallerFileName.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(InstallerFileNameTest, IsTheLastComponentWhenThatIsAPlainNameOfAnImage)
{
    const std::string l195(195, 'x');
    const std::vector<std::pair<std::string, std::string>> cases{
        {"https://h/a/Corvane-1.3.dmg", "Corvane-1.3.dmg"},
        {"https://h/Corvane-1.3.DMG?v=2.zip#f", "Corvane-1.3.DMG"},
        {"https://h/New%20Corvane%C3%A4.dMg", "New Corvaneä.dMg"},
        {"https://h/a%252Fb.dmg", "a%2Fb.dmg"}, // decoded once
        {"https://h/.dmg", ".dmg"},
        {"https://h/" + l195 + "x.dmg", l195 + "x.dmg"},
        {"https://h/" + l195 + "xx.dmg", "Corvane.dmg"}, // 201 bytes
        {"https://h/Corvane.zip", "Corvane.dmg"},
        {"https://h/Corvane", "Corvane.dmg"},
        {"https://h/dmg", "Corvane.dmg"},
        {"https://h/a/Corvane-1.3.dmg/", "Corvane-1.3.dmg"},
        {"https://h/Corvane-1.3.dmg//?v=2", "Corvane-1.3.dmg"},
        {"https://h/Corvane-1.3.dmg%2F", "Corvane.dmg"},
        {"https://h/a.dmg/latest/", "Corvane.dmg"},
        {"https://h//", "Corvane.dmg"},
        {"https://h/", "Corvane.dmg"},
        {"https://h", "Corvane.dmg"},
        {"https://h/?x=/a.dmg", "Corvane.dmg"},
        {"https://h/..", "Corvane.dmg"},
        {"https://h/%2e%2e", "Corvane.dmg"},
        {"https://h/.%2e%2fa.dmg", "Corvane.dmg"},
        {"https://h/%2Fetc%2Fa.dmg", "Corvane.dmg"},
        {"https://h/a%00.dmg", "Corvane.dmg"},
        {"https://h/a%0A.dmg", "Corvane.dmg"},
        {"https://h/a%7F.dmg", "Corvane.dmg"},
        {"https://h/a%C2%85.dmg", "Corvane.dmg"},
        {"https://h/a%E2%80%AEgmd.dmg", "Corvane.dmg"}, // would be read from the right
        {"https://h/a%FF.dmg", "Corvane.dmg"},
        {"https://h/a.dmg%00", "Corvane.dmg"},
    };
    for (const auto& [address, expected] : cases)
        EXPECT_EQ(installerFileName(*Url::parse(address)), expected) << address;
}

} // namespace
} // namespace corvane
