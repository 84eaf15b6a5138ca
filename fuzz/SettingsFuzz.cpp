#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "settings/AppSettings.h"

namespace corvane::fuzz {
namespace {

/// Every "/" of the file is written as "\/".
bool hasBareSlash(std::string_view file)
{
    for (auto slash = file.find('/'); slash != std::string_view::npos; slash = file.find('/', slash + 1)) {
        if (slash == 0 || file[slash - 1] != '\\')
            return true;
    }
    return false;
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto settings = decodeSettings(bytes);
    require(!settings || parseJson(bytes), "settings are JSON");

    // A user may type any text for the address, also one that cannot be stored.
    AppSettings typed = settings.value_or(AppSettings{});
    typed.SitesSourceUrl = bytes;
    require(encodeSettings(typed).has_value() == isValidUtf8(bytes), "exactly UTF-8 can be stored");

    for (const auto& record : {settings.value_or(AppSettings{}), typed}) {
        const auto file = encodeSettings(record);
        if (!file)
            continue;
        require(decodeSettings(*file) == record, "settings that are written are read again");
        require(file->ends_with("}\n") && !hasBareSlash(*file), "the file has the form of a settings file");
    }
    require(!settings || encodeSettings(*settings), "settings that are read can be written");
}

} // namespace corvane::fuzz
