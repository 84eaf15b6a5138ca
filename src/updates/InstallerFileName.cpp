#include "updates/InstallerFileName.h"

#include "base/Text.h"

#include <string_view>

namespace corvane {
namespace {

constexpr std::string_view defaultName = "Corvane.dmg";
constexpr std::string_view extension = ".dmg";
constexpr std::size_t longest = 200; // bytes

/// Without control characters and others that a title leaves out, and without a separator. The extension keeps "." and
/// ".." out.
bool isPlain(std::string_view name)
{
    return name.size() <= longest && !name.contains('/') && isValidUtf8(name) && safeTitle(name) == name;
}

} // namespace

std::string installerFileName(const Url& url)
{
    auto path = url.path();
    while (path.ends_with('/'))
        path.remove_suffix(1);
    auto name = percentDecoded(path.substr(path.rfind('/') + 1));
    const bool isUsable = lowercased(name).ends_with(extension) && isPlain(name);
    return isUsable ? name : std::string(defaultName);
}

} // namespace corvane
