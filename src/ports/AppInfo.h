#pragma once

#include <string>

namespace corvane {

/// What the build knows of the program itself.
struct AppInfo {
    static constexpr const char* applicationId = "com.hollisward.Corvane";

    std::string shortVersion; // for example "1.2.0"; empty when unknown

    /// The values compiled into this program.
    static AppInfo ofThisBuild();
};

} // namespace corvane
