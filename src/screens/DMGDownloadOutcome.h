#pragma once

#include <filesystem>
#include <string>
#include <variant>

namespace corvane {

/// How an installer download ended: where the image is, or what to tell the user.
struct DMGDownloadOutcome {
    struct Success {
        std::filesystem::path file;

        bool operator==(const Success&) const = default;
    };
    struct Error {
        std::string text;

        bool operator==(const Error&) const = default;
    };

    std::variant<Success, Error> result;

    /// The same for two outcomes that are one alert: "ok-" and the path, or "err-" and the text.
    std::string identity() const;

    bool operator==(const DMGDownloadOutcome& other) const { return identity() == other.identity(); }
};

} // namespace corvane
