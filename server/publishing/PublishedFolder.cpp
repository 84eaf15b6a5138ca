#include "publishing/PublishedFolder.h"

#include "http/PercentDecoding.h"
#include "publishing/ContentType.h"
#include "publishing/FileDescriptor.h"
#include "publishing/Freshness.h"
#include "publishing/GeneratedImage.h"
#include "publishing/NotesText.h"

#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::server {
namespace {

/// JSON and HTML files up to this size have their addresses adapted; longer ones are sent as they are.
constexpr std::uint64_t largestAdapted = std::uint64_t{4} * 1024 * 1024;
constexpr std::size_t longestNote = 4096;

/// The names of a path, the last one empty when it ends in "/". Nothing when one of them is not to be followed.
std::optional<std::vector<std::string>> namesOf(std::string_view path)
{
    if (!path.starts_with('/'))
        return std::nullopt;
    path.remove_prefix(1);
    std::vector<std::string> names;
    while (true) {
        const auto slash = path.find('/');
        auto name = percentDecoded(path.substr(0, slash));
        const bool isLast = slash == std::string_view::npos;
        if (!name || name->starts_with('.') || name->contains('/') || (name->empty() && !isLast))
            return std::nullopt;
        names.push_back(*std::move(name));
        if (isLast)
            return names;
        path.remove_prefix(slash + 1);
    }
}

bool isAdapted(std::string_view contentType)
{
    return contentType == "application/json" || contentType.starts_with("text/html");
}

OpenFile::TimePoint changeTime(const struct stat& status)
{
    return OpenFile::TimePoint(std::chrono::seconds(status.st_mtim.tv_sec) +
                               std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

HttpAnswer answerImage(std::shared_ptr<const ByteSource> image)
{
    auto answer = HttpAnswer::text(contentTypeOf(".dmg"), {});
    answer.content = std::move(image);
    return std::move(answer).with("Cache-Control", "no-cache");
}

HttpAnswer notFound()
{
    return HttpAnswer::error(404, "not_found", "There is nothing at this address.");
}

HttpAnswer movedToFolder(const HttpRequest& request)
{
    const auto query = request.query.empty() ? std::string() : "?" + request.query;
    HttpAnswer answer;
    answer.status = 308;
    return std::move(answer).with("Location", request.path + "/" + query).with("Cache-Control", "no-cache");
}

} // namespace

HttpAnswer PublishedFolder::answer(const HttpRequest& request) const
{
    const auto found = find(request.path);
    const auto image = found ? nullptr : generatedImage(request.path);
    if (!found && !image)
        return notFound();
    if (!request.isReading())
        return HttpAnswer::error(405, "method_not_allowed", "A published file can only be read.")
            .with("Allow", "GET, HEAD");
    if (image)
        return answerImage(image);
    return found->file ? answerFile(request, *found) : movedToFolder(request);
}

std::optional<std::string> PublishedFolder::text(std::string_view path, std::size_t longest) const
{
    const auto found = find(path);
    if (!found || !found->file || found->file->size() > longest)
        return std::nullopt;
    return found->file->read(0, longest);
}

std::optional<PublishedFolder::Found> PublishedFolder::find(std::string_view path) const
{
    auto names = namesOf(path);
    if (!names)
        return std::nullopt;
    const bool endsInSlash = names->back().empty();
    if (endsInSlash)
        names->back() = "index.html";

    FileDescriptor current(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (current.get() < 0)
        return std::nullopt;
    for (const auto& name : *names) {
        // Without O_NONBLOCK a pipe in the folder would hold the whole server.
        const int next = openat(current.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (next < 0)
            return std::nullopt;
        current.reset(next);
    }
    struct stat status{};
    if (fstat(current.get(), &status) != 0)
        return std::nullopt;
    if (S_ISDIR(status.st_mode) && !endsInSlash)
        return faccessat(current.get(), "index.html", F_OK, AT_SYMLINK_NOFOLLOW) == 0 ? std::optional(Found{})
                                                                                      : std::nullopt;
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    return Found{std::make_shared<OpenFile>(current.release(), size, changeTime(status)), names->back()};
}

std::shared_ptr<const ByteSource> PublishedFolder::generatedImage(std::string_view path) const
{
    const auto note = find(std::string(path).append(GeneratedImage::noteSuffix));
    if (!note || !note->file)
        return nullptr;
    const auto name = std::string_view(note->name).substr(0, note->name.size() - GeneratedImage::noteSuffix.size());
    const auto image = GeneratedImage::fromNote(name, note->file->read(0, longestNote));
    return image ? std::make_shared<GeneratedImage>(*image) : nullptr;
}

HttpAnswer PublishedFolder::answerFile(const HttpRequest& request, const Found& found) const
{
    const auto contentType = contentTypeOf(found.name);
    const auto tag = entityTag(*found.file);
    HttpAnswer answer;
    if (isFresh(request, *found.file)) {
        answer.status = 304;
    } else {
        answer = HttpAnswer::text(contentType, {});
        if (isAdapted(contentType) && found.file->size() <= largestAdapted)
            answer.body = replacedAll(found.file->read(0, largestAdapted), sampleBase, base_);
        else
            answer.content = found.file;
    }
    return std::move(answer)
        .with("ETag", tag)
        .with("Last-Modified", httpDate(found.file->changedAt()))
        .with("Cache-Control", "no-cache");
}

} // namespace corvane::server
