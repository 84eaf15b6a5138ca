#pragma once

#include "ports/HostInfo.h"

#include <functional>
#include <optional>

namespace corvane {

/// What GLib and the environment say of the machine and the user.
class GlibHostInfo final : public HostInfo {
public:
    using Environment = std::function<std::optional<std::string>(const char* name)>;

    std::string hostName() const override;
    std::string loginName() const override;
    std::string localeIdentifier() const override;

    /// The rule of `localeIdentifier()` over any environment.
    static std::string localeIdentifier(const Environment& environment);
};

} // namespace corvane
