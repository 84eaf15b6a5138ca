#pragma once

#include "ports/HostInfo.h"

namespace corvane::testing {

/// A machine whose names a test chooses.
class FixedHostInfo final : public HostInfo {
public:
    std::string hostName() const override { return host; }
    std::string loginName() const override { return login; }
    std::string localeIdentifier() const override { return locale; }

    std::string host = "desk";
    std::string login = "ada";
    std::string locale = "en_US";
};

} // namespace corvane::testing
