#include "updates/UpdateChoice.h"

#include "updates/VersionOrder.h"

namespace corvane {

std::optional<UpdateChoice> chooseUpdate(std::string_view running, const std::optional<HostedVersion>& hosted,
                                         const std::optional<std::string>& store)
{
    const bool isHostedNewer = hosted && isVersionNewer(hosted->version, running);
    const bool isStoreNewer = store && isVersionNewer(*store, running);
    if (isHostedNewer && (!isStoreNewer || isVersionNewer(hosted->version, *store)))
        return UpdateChoice{.version = hosted->version, .isHosted = true};
    if (isStoreNewer)
        return UpdateChoice{.version = *store};
    return std::nullopt;
}

} // namespace corvane
