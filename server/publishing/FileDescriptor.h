#pragma once

#include <utility>

#include <unistd.h>

namespace corvane::server {

/// Owns an open file descriptor; a negative number stands for none.
class FileDescriptor {
public:
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~FileDescriptor() { reset(-1); }

    void reset(int number)
    {
        if (number_ >= 0)
            close(number_);
        number_ = number;
    }
    int get() const { return number_; }
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

} // namespace corvane::server
