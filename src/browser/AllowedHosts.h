#pragma once

#include "base/Url.h"

#include <set>
#include <string>
#include <string_view>

namespace corvane {

/// The hosts whose pages may speak to the program: the one of the notification server, which serves the registration
/// page.
class AllowedHosts {
public:
    /// `base` is the notification server's; when it is https, only https pages are trusted with messages.
    explicit AllowedHosts(const Url& base);

    bool containsHost(std::string_view host) const;

    /// Whether a page's origin (scheme://host:port) may send messages.
    bool trustsOrigin(std::string_view origin) const;

    /// In ascending order.
    const std::set<std::string, std::less<>>& names() const { return names_; }

    /// The names in single quotes, separated by ", ": the inside of a script's list.
    std::string listText() const;

private:
    std::set<std::string, std::less<>> names_;
    bool requiresHttps_;
};

} // namespace corvane
