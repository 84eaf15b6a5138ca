#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "ports/HttpClient.h"
#include "updates/HostedVersion.h"
#include "updates/InstallerFileName.h"
#include "updates/ReleaseNotes.h"
#include "updates/VersionOrder.h"

namespace corvane::fuzz {
namespace {

void requireHostedVersion(const HostedVersion& hosted)
{
    require(!hosted.version.empty() && isValidUtf8(hosted.version), "a version is text");
    Json document = {{"version", hosted.version}};
    if (hosted.downloadURL) {
        require(isLoadable(*hosted.downloadURL), "the link is no script");
        document["downloadURL"] = hosted.downloadURL->text();
        const auto name = installerFileName(*hosted.downloadURL);
        require(lowercased(name).ends_with(".dmg") && name.size() <= 200 && safeTitle(name) == name &&
                    !name.contains('/'),
                "the image has a plain file name");
    }
    if (hosted.sha256)
        document["sha256"] = *hosted.sha256;
    require(decodeHostedVersion(compactJson(document)) == hosted, "a version file that is written is read again");
}

void requireOrder(std::string_view version, std::string_view other)
{
    require(!isVersionNewer(version, version), "no version is newer than itself");
    require(!(isVersionNewer(version, other) && isVersionNewer(other, version)), "of two versions one is newer");
    require(!isVersionNewer(version, std::string(version) + ".0"), "zeros at the end do not count");
}

} // namespace

void readInput(std::string_view bytes)
{
    if (const auto hosted = decodeHostedVersion(bytes)) {
        require(parseJson(bytes).has_value(), "a version file is JSON");
        requireHostedVersion(*hosted);
        requireOrder(hosted->version, "0.75.0");
    }
    if (const auto store = decodeStoreVersion(bytes)) {
        require(parseJson(bytes).has_value() && isValidUtf8(*store), "a store's answer is JSON");
        requireOrder(*store, "0.75.0");
    }
    const auto half = bytes.size() / 2;
    requireOrder(bytes.substr(0, half), bytes.substr(half));

    const auto notes = filledReleaseNotes(bytes, "0.75.0", "Aug 12, 2026");
    require(notes && notes->size() <= bytesOf(BodyLimit::page) && !notes->contains("{{VERSION}}"),
            "a page is filled in everywhere");
    const auto filled = filledReleaseNotes("<p>{{VERSION}}</p>{{VERSION}}", bytes, "today");
    require(filled && (bytes.contains("{{") || filled->contains("<p>" + std::string(bytes) + "</p>")),
            "a version is filled in as it is");
}

} // namespace corvane::fuzz
