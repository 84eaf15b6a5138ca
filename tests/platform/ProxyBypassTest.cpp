#include "platform/ProxyBypass.h"

#include <map>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ProxyBypassTest, AddsThisMachineToTheHostsThatGoPastTheProxy)
{
    struct Case {
        std::map<std::string, std::string> environment;
        std::optional<std::string> value;
    };
    const std::string loopback = "localhost,127.0.0.0/8,::1";
    const std::vector<Case> cases{
        {{}, std::nullopt},
        {{{"http_proxy", ""}, {"no_proxy", "example.org"}}, std::nullopt},
        {{{"http_proxy", "http://proxy:8080"}}, loopback},
        {{{"ALL_PROXY", "socks://proxy:1080"}, {"no_proxy", ""}}, loopback},
        {{{"HTTP_PROXY", "http://proxy:8080"}, {"no_proxy", "a.example"}, {"NO_PROXY", "b.example"}},
         "a.example," + loopback},
        {{{"all_proxy", "http://proxy:8080"}, {"NO_PROXY", "b.example"}}, "b.example," + loopback},
        {{{"http_proxy", "http://proxy:8080"}, {"no_proxy", "a.example," + loopback}}, std::nullopt},
    };
    for (const auto& [environment, value] : cases) {
        const auto found = noProxyWithLoopback([&](const char* name) {
            const auto variable = environment.find(name);
            return variable == environment.end() ? std::nullopt : std::optional(variable->second);
        });
        EXPECT_EQ(found, value) << environment.size();
    }
}

} // namespace
} // namespace corvane
