#pragma once

#include "ports/IncomingFile.h"
#include "support/MemoryFileStore.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace corvane::testing {

/// Incoming files that end up in a MemoryFileStore; single steps can be made to fail.
class MemoryIncomingFiles final : public IncomingFiles {
public:
    explicit MemoryIncomingFiles(MemoryFileStore& store) : store_(store) {}

    Result<std::unique_ptr<IncomingFile>> create(const std::filesystem::path& folder) override
    {
        if (closedFolders.contains(folder))
            return std::unexpected(Error{"Permission denied"});
        createdIn.push_back(folder);
        return std::make_unique<File>(*this);
    }

    std::set<std::filesystem::path> closedFolders; // nothing can be created there
    std::set<std::filesystem::path> refused;       // nothing can be moved there
    bool isDiskFull = false;
    std::vector<std::filesystem::path> createdIn;
    int temporaries = 0; // that exist now

private:
    class File final : public IncomingFile {
    public:
        explicit File(MemoryIncomingFiles& owner) : owner_(owner) { ++owner_.temporaries; }
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        ~File() override { --owner_.temporaries; }

        Result<void> write(std::string_view bytes) override
        {
            if (owner_.isDiskFull)
                return std::unexpected(Error{"No space left on device"});
            bytes_ += bytes;
            return {};
        }
        std::string sha256() const override { return "digest of " + bytes_; }
        Task<Result<void>> moveTo(std::filesystem::path target) override
        {
            if (owner_.refused.contains(target))
                co_return std::unexpected(Error{"Cross-device link"});
            owner_.store_.files[target] = bytes_;
            co_return Result<void>();
        }

    private:
        MemoryIncomingFiles& owner_;
        std::string bytes_;
    };

    MemoryFileStore& store_;
};

} // namespace corvane::testing
