#pragma once

#include "ports/IncomingFile.h"

namespace corvane {

/// Incoming files on a POSIX file system, under temporary names beside their likely place. What a killed run left in
/// the folder is swept first.
class PosixIncomingFiles final : public IncomingFiles {
public:
    Result<std::unique_ptr<IncomingFile>> create(const std::filesystem::path& folder) override;
};

} // namespace corvane
