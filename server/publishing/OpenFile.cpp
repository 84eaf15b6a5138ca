#include "publishing/OpenFile.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace corvane::server {

OpenFile::~OpenFile()
{
    close(descriptor_);
}

std::string OpenFile::read(std::uint64_t offset, std::size_t count) const
{
    if (offset >= size_)
        return {};
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset)), '\0');
    ssize_t got = 0;
    do {
        got = pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    } while (got < 0 && errno == EINTR);
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return bytes;
}

} // namespace corvane::server
