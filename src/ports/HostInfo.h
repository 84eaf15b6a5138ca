#pragma once

#include <string>

namespace corvane {

/// What the system says of the machine and the user.
class HostInfo {
public:
    virtual ~HostInfo() = default;

    virtual std::string hostName() const = 0;
    virtual std::string loginName() const = 0;

    /// The user's locale, for example "de_CH": the first that is set of LC_ALL, LC_MESSAGES and LANG without encoding
    /// and modifier; "en_US" for none, "C" and "POSIX".
    virtual std::string localeIdentifier() const = 0;
};

} // namespace corvane
