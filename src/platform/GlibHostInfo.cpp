#include "platform/GlibHostInfo.h"

#include "base/Text.h"

#include <array>
#include <cstdlib>

#include <glib.h>

namespace corvane {

std::string GlibHostInfo::hostName() const
{
    return repairedUtf8(g_get_host_name());
}

std::string GlibHostInfo::loginName() const
{
    return repairedUtf8(g_get_user_name());
}

std::string GlibHostInfo::localeIdentifier() const
{
    return localeIdentifier([](const char* name) {
        const char* value = std::getenv(name);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    });
}

std::string GlibHostInfo::localeIdentifier(const Environment& environment)
{
    static constexpr std::array variables{"LC_ALL", "LC_MESSAGES", "LANG"};
    for (const auto* variable : variables) {
        const auto value = environment(variable);
        if (!value || value->empty())
            continue;
        auto locale = value->substr(0, value->find_first_of(".@"));
        if (locale.empty() || locale == "C" || locale == "POSIX")
            break;
        return repairedUtf8(locale);
    }
    return "en_US";
}

} // namespace corvane
