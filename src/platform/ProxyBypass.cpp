#include "platform/ProxyBypass.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace corvane {
namespace {

constexpr std::array proxyVariables{"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"};
constexpr std::string_view loopback = "localhost,127.0.0.0/8,::1";

bool isSet(const std::optional<std::string>& value)
{
    return value && !value->empty();
}

} // namespace

std::optional<std::string> noProxyWithLoopback(const EnvironmentReader& environment)
{
    if (std::ranges::none_of(proxyVariables, [&](const char* name) { return isSet(environment(name)); }))
        return std::nullopt;
    auto value = environment("no_proxy");
    if (!value)
        value = environment("NO_PROXY"); // read only where the other is missing
    if (!isSet(value))
        return std::string(loopback);
    if (value->ends_with(loopback))
        return std::nullopt;
    return *value + "," + std::string(loopback);
}

void keepLoopbackFromProxies()
{
    const auto value = noProxyWithLoopback([](const char* name) {
        const char* found = std::getenv(name);
        return found == nullptr ? std::nullopt : std::optional<std::string>(found);
    });
    if (value)
        setenv("no_proxy", value->c_str(), 1);
}

} // namespace corvane
