#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// What the build knows of the program itself.
struct AppInfo {
    static constexpr std::string_view applicationId = "com.hollisward.Corvane";

    std::string shortVersion; // for example "1.2.0"; empty when unknown

    /// The values compiled into this program.
    static AppInfo ofThisBuild();
};

} // namespace corvane
