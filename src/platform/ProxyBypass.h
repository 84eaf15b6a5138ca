#pragma once

#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// Reads an environment variable.
using EnvironmentReader = std::function<std::optional<std::string>(const char* name)>;

/// The value of "no_proxy" that also keeps this machine's own addresses from the proxies that the environment names;
/// nothing where it names none, or the value does so already.
std::optional<std::string> noProxyWithLoopback(const EnvironmentReader& environment);

/// Sets it for this process and those that it starts. Without it the page that this program serves to itself would be
/// asked for at the proxy. Call in `main`, before there is a second thread.
void keepLoopbackFromProxies();

} // namespace corvane
