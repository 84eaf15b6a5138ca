#include "publishing/HostedVersion.h"

#include "base/Json.h"
#include "publishing/FileReading.h"
#include "publishing/VersionNumber.h"

#include <fmt/format.h>

namespace corvane::server {

Result<std::optional<HostedVersion>> HostedVersion::read(const std::filesystem::path& file)
{
    const auto text = readTextIfThere(file);
    if (!text)
        return std::unexpected(text.error());
    if (!*text)
        return std::nullopt;
    const auto document = parseJson(**text);
    const auto textOfMember = [&](const char* name) {
        const auto* found = document ? textOf(member(*document, name)) : nullptr;
        return found == nullptr ? std::string() : *found;
    };
    HostedVersion hosted{textOfMember("version"), textOfMember("released"), textOfMember("downloadURL"),
                         textOfMember("sha256")};
    if (!VersionNumber::parse(hosted.version))
        return std::unexpected(Error{fmt::format("{} does not name a version such as 0.75.0", file.string())});
    return hosted;
}

std::string HostedVersion::document() const
{
    Json members = {{"version", version}};
    if (!released.empty())
        members["released"] = released;
    if (!downloadUrl.empty())
        members["downloadURL"] = downloadUrl;
    if (!sha256.empty())
        members["sha256"] = sha256;
    return members.dump(2) + "\n";
}

} // namespace corvane::server
