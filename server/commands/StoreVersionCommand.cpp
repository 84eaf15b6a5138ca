#include "commands/StoreVersionCommand.h"

#include "api/StoreApi.h"
#include "base/Json.h"
#include "publishing/FileBatch.h"
#include "publishing/VersionNumber.h"

#include <fmt/format.h>

namespace corvane::server {

Result<std::string> setStoreVersion(const CommandLine& line)
{
    const bool isNone = line.argument == "none";
    if (!isNone && !VersionNumber::parse(line.argument))
        return std::unexpected(
            Error{fmt::format("\"{}\" is neither a version such as 0.76.0 nor \"none\"", line.argument)});
    auto batch = FileBatch::open(*line.publishFolder);
    if (!batch)
        return std::unexpected(batch.error());
    const auto document = isNone ? Json::object() : Json{{"version", line.argument}};
    if (auto put =
            batch->put(std::filesystem::path(StoreApi::versionPath).relative_path(), compactJson(document) + "\n");
        !put)
        return std::unexpected(put.error());
    if (auto done = batch->commit(); !done)
        return std::unexpected(done.error());
    return isNone ? "The store look-up has no results.\n"
                  : fmt::format("The store look-up answers with {}.\n", line.argument);
}

} // namespace corvane::server
