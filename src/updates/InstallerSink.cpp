#include "updates/InstallerSink.h"

#include <utility>

namespace corvane {

Result<void> InstallerSink::write(std::string_view bytes)
{
    const auto opened = file();
    if (!opened)
        return std::unexpected(opened.error());
    return (*opened)->write(bytes);
}

Result<IncomingFile*> InstallerSink::file()
{
    if (!file_) {
        auto created = create();
        if (!created)
            return std::unexpected(std::move(created.error()));
        file_ = *std::move(created);
    }
    return file_.get();
}

Result<std::unique_ptr<IncomingFile>> InstallerSink::create()
{
    if (places_.downloads) {
        if (auto created = incoming_.create(*places_.downloads))
            return created;
    }
    const auto folder = places_.updates();
    if (auto made = files_.makeFolder(folder); !made)
        return std::unexpected(std::move(made.error()));
    return incoming_.create(folder);
}

} // namespace corvane
