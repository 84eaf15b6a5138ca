#pragma once

#include <string>

namespace corvane {

/// What the build knows of the program itself.
struct AppInfo {
    static constexpr const char* applicationId = "com.hollisward.Corvane";

    std::string shortVersion;  // for example "1.2.0"; empty when unknown
    std::string buildDateText; // for example "Aug 12, 2026"

    /// The version to show and to compare with; "1.0" when it is unknown.
    std::string currentAppVersion() const { return shortVersion.empty() ? "1.0" : shortVersion; }

    /// The values compiled into this program.
    static AppInfo ofThisBuild();
};

} // namespace corvane
