#include "commands/PublishFolderCommand.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fmt/format.h>

namespace corvane::server {

namespace fs = std::filesystem;

namespace {

Result<void> copyAtOnce(const fs::path& samples, const fs::path& target)
{
    const auto fail = [&](const std::string& reason) {
        return std::unexpected(Error{fmt::format("cannot make {}: {}", target.string(), reason)});
    };
    std::error_code failed;
    fs::create_directories(target.parent_path(), failed);
    auto name = (target.parent_path() / ".corvane-publish-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        return fail(std::generic_category().message(errno));
    fs::copy(samples, name, fs::copy_options::recursive, failed);
    if (!failed)
        fs::rename(name, target, failed); // replaces an empty folder, and nothing else
    if (!failed)
        return {};
    std::error_code ignored;
    fs::remove_all(name, ignored);
    return fail(failed.message());
}

} // namespace

Result<std::string> copyPublishFolder(const fs::path& samples, const fs::path& target)
{
    std::error_code failed;
    if (!fs::is_directory(samples, failed))
        return std::unexpected(Error{fmt::format("there are no sample documents in {}", samples.string())});
    auto place = fs::absolute(target, failed).lexically_normal();
    if (!place.has_filename())
        place = place.parent_path();
    if (auto copied = copyAtOnce(samples, place); !copied)
        return std::unexpected(copied.error());
    return fmt::format("The sample documents are in {}.\nServe them: corvane-server --publish-folder {}\n",
                       place.string(), target.string());
}

} // namespace corvane::server
