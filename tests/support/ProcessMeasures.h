#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <malloc.h>
#if __has_feature(address_sanitizer)
#include <sanitizer/allocator_interface.h>
#endif

namespace corvane::testing {

inline std::size_t entriesOf(const char* folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// How many files, sockets and the like this process has open, and how many threads it runs.
inline std::size_t openDescriptors()
{
    return entriesOf("/proc/self/fd") - 1; // without the folder itself
}
inline std::size_t runningThreads()
{
    return entriesOf("/proc/self/task");
}

/// Those of one name; the libraries have threads of their own, which come and go.
inline std::size_t runningThreads(std::string_view name)
{
    std::size_t count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string found;
        std::getline(std::ifstream(task.path() / "comm"), found);
        count += found == name ? 1 : 0;
    }
    return count;
}

/// A line of this process's status that counts KiB: "VmRSS" what is resident now, "VmHWM" the most since the last
/// `forgetPeak`.
inline std::size_t statusKiB(std::string_view name)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word.starts_with(name) && word.size() == name.size() + 1) {
            std::size_t size = 0;
            status >> size;
            return size;
        }
    }
    return 0;
}

inline void forgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// What is allocated and not freed.
inline std::size_t heapBytes()
{
#if __has_feature(address_sanitizer)
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

} // namespace corvane::testing
