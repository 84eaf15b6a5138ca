#include "platform/PosixIncomingFiles.h"

#include "async/MainLoop.h"
#include "platform/GLibHandle.h"
#include "platform/TemporaryFile.h"

#include <utility>

#include <fcntl.h>
#include <sys/sendfile.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr mode_t finalMode = 0644;

using ChecksumPtr = std::unique_ptr<GChecksum, FreeWith<g_checksum_free>>;

/// Copies a whole file, a piece in each turn of the main loop. The number of the error, 0 for none.
Task<int> copied(TemporaryFile* from, TemporaryFile* to)
{
    static constexpr std::size_t piece = std::size_t{1} << 20U;
    for (off_t place = 0;;) {
        const auto count =
            uninterrupted([&] { return ::sendfile(to->file().number(), from->file().number(), &place, piece); });
        if (count <= 0)
            co_return count == 0 ? 0 : errno;
        co_await Delay(std::chrono::milliseconds(0));
    }
}

class PosixIncomingFile final : public IncomingFile {
public:
    explicit PosixIncomingFile(const fs::path& folder) : temporary_(folder, O_RDWR) {}

    bool isOpen() const { return static_cast<bool>(temporary_); }

    Result<void> write(std::string_view bytes) override
    {
        if (!temporary_.file().writeAll(bytes))
            return std::unexpected(systemError("Cannot write", "download"));
        g_checksum_update(checksum_.get(), reinterpret_cast<const guchar*>(bytes.data()),
                          static_cast<gssize>(bytes.size()));
        return {};
    }

    std::string sha256() const override
    {
        const ChecksumPtr closed(g_checksum_copy(checksum_.get())); // reading ends a checksum
        return g_checksum_get_string(closed.get());
    }

    Task<Result<void>> moveTo(fs::path target) override
    {
        const bool hasMode = temporary_.setMode(finalMode);
        if (hasMode && temporary_.becomes(target))
            co_return Result<void>();
        if (hasMode && errno != EXDEV)
            co_return std::unexpected(systemError("Cannot write", target));

        // The target lies on another file system, or on one that may know the mode which this one refuses.
        TemporaryFile beside(target.parent_path(), O_WRONLY);
        if (!beside || !beside.setMode(finalMode))
            co_return std::unexpected(systemError("Cannot write", target));
        const int error = co_await copied(&temporary_, &beside);
        errno = error;
        if (error != 0 || !beside.becomes(target))
            co_return std::unexpected(systemError("Cannot write", target));
        co_return Result<void>();
    }

private:
    TemporaryFile temporary_;
    ChecksumPtr checksum_{g_checksum_new(G_CHECKSUM_SHA256)};
};

} // namespace

Result<std::unique_ptr<IncomingFile>> PosixIncomingFiles::create(const fs::path& folder)
{
    sweepTemporaryFiles(folder);
    auto file = std::make_unique<PosixIncomingFile>(folder);
    if (!file->isOpen())
        return std::unexpected(systemError("Cannot write to", folder));
    return file;
}

} // namespace corvane
