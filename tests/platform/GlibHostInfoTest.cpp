#include "platform/GlibHostInfo.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(GlibHostInfoTest, TakesTheLocaleFromTheFirstVariableThatIsSet)
{
    struct Case {
        std::map<std::string, std::string> environment;
        std::string locale;
    };
    const std::vector<Case> cases{
        {{}, "en_US"},
        {{{"LANG", "de_CH.UTF-8"}}, "de_CH"},
        {{{"LANG", "de_CH.UTF-8"}, {"LC_MESSAGES", "fr_FR@euro"}}, "fr_FR"},
        {{{"LC_ALL", "pt_BR"}, {"LC_MESSAGES", "fr"}, {"LANG", "de"}}, "pt_BR"},
        {{{"LC_ALL", ""}, {"LANG", "ja_JP.eucJP"}}, "ja_JP"},
        {{{"LC_ALL", "C"}, {"LANG", "de_DE"}}, "en_US"},
        {{{"LANG", "C.UTF-8"}}, "en_US"},
        {{{"LANG", "POSIX"}}, "en_US"},
        {{{"LANG", ".UTF-8"}}, "en_US"},
        {{{"LANGUAGE", "de:fr"}}, "en_US"},
    };
    for (const auto& [environment, locale] : cases) {
        const auto found = GlibHostInfo::localeIdentifier([&](const char* name) {
            const auto value = environment.find(name);
            return value == environment.end() ? std::nullopt : std::optional(value->second);
        });
        EXPECT_EQ(found, locale);
    }
}

} // namespace
} // namespace corvane
