#pragma once

#include "browser/AllowedHosts.h"

#include <string>

namespace corvane {

/// The script that gives pages of the allowed hosts `window.chrome.webview.postMessage`.
std::string messageEntryScript(const AllowedHosts& hosts);

/// The script that reports a deleted profile when the address of an allowed page says so.
std::string deletionReportScript(const AllowedHosts& hosts);

} // namespace corvane
