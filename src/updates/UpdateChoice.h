#pragma once

#include "updates/HostedVersion.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// A newer version and where it comes from.
struct UpdateChoice {
    std::string version;
    bool isHosted = false; // else the store has it

    bool operator==(const UpdateChoice&) const = default;
};

/// Which of the two answers, either of which may be absent, is the update for the version that runs. The newer one
/// wins, and the store on a tie. Empty when neither is newer than what runs.
std::optional<UpdateChoice> chooseUpdate(std::string_view running, const std::optional<HostedVersion>& hosted,
                                         const std::optional<std::string>& store);

} // namespace corvane
