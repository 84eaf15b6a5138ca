#pragma once

#include "base/Subscription.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <sigc++/signal.h>

namespace corvane {

/// Tells everybody who asked that something of a name has happened: for words from the program's edge, such as a key or
/// a menu entry, to a window that they need not know. Single-threaded.
class NotificationCenter {
public:
    void post(std::string_view name)
    {
        if (const auto found = signals_.find(name); found != signals_.end())
            found->second.emit();
    }

    [[nodiscard]] Subscription observe(std::string_view name, const std::function<void()>& observer)
    {
        auto connection = signals_[std::string(name)].connect(observer);
        return Subscription([connection]() mutable { connection.disconnect(); });
    }

private:
    std::map<std::string, sigc::signal<void()>, std::less<>> signals_;
};

} // namespace corvane
