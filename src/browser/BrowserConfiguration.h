#pragma once

#include "browser/AllowedHosts.h"
#include "ports/WebView.h"

namespace corvane {

/// What every service sees as its browser.
inline constexpr std::string_view browserUserAgent =
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/18.0 "
    "Safari/605.1.15";

/// The configuration of the main view: user agent, message channel and page scripts, in their order.
MainViewConfiguration mainViewConfiguration(const AllowedHosts& hosts);

} // namespace corvane
