#include "catalogue/RedirectDocument.h"

#include "async/MainLoop.h"
#include "base/Json.h"
#include "catalogue/JsonSlices.h"

namespace corvane {

Task<std::optional<std::string>> decodeRedirectInTurns(std::string_view bytes)
{
    std::optional<std::string> address;
    JsonSlices slices(bytes, JsonSlices::usualSize);
    if (!slices.isObject())
        co_return std::nullopt;
    while (const auto slice = slices.next()) {
        const auto members = parseJson(*slice);
        if (!members)
            co_return std::nullopt;
        if (const auto* value = member(*members, "source_url"))
            address = textOf(value) == nullptr ? std::string() : *textOf(value);
        if (!slices.isComplete())
            co_await IdleTurn();
    }
    co_return slices.isComplete() && address && !address->empty() ? address : std::nullopt;
}

} // namespace corvane
