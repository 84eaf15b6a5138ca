#pragma once

#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::testing {

/// One connection to a server on 127.0.0.1 that sends what a test chooses. Waits for nothing longer than ten seconds.
class RawClient {
public:
    explicit RawClient(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const timeval patience{.tv_sec = 10, .tv_usec = 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        const auto address = loopback(port);
        isConnected_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    RawClient(RawClient&& other) noexcept : socket_(other.socket_), isConnected_(other.isConnected_)
    {
        other.socket_ = -1;
    }
    RawClient& operator=(RawClient&&) = delete;
    ~RawClient()
    {
        if (socket_ >= 0)
            ::close(socket_);
    }

    static sockaddr_in loopback(std::uint16_t port)
    {
        return {.sin_family = AF_INET,
                .sin_port = htons(port),
                .sin_addr = {.s_addr = htonl(INADDR_LOOPBACK)},
                .sin_zero = {}};
    }

    bool isConnected() const { return isConnected_; }

    /// False when the server hung up before it took everything.
    bool send(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    void finishSending() { ::shutdown(socket_, SHUT_WR); }

    /// Closes so that the server sees a reset instead of an end.
    void reset()
    {
        const linger none{.l_onoff = 1, .l_linger = 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &none, sizeof none);
        ::close(socket_);
        socket_ = -1;
    }

    /// Takes what has arrived; true once the server has ended the connection.
    bool isOver() { return take(MSG_DONTWAIT); }

    /// Everything until the server's end, which is waited for.
    std::string answer()
    {
        while (!take(0)) {
        }
        return received;
    }

    std::string received;
    bool wasReset = false; // or silent for too long

private:
    bool take(int flags)
    {
        std::array<char, 65536> buffer{};
        const auto count = ::recv(socket_, buffer.data(), buffer.size(), flags);
        if (count > 0) {
            received.append(buffer.data(), static_cast<std::size_t>(count));
            return false;
        }
        const bool wouldWait = count < 0 && errno == EAGAIN;
        wasReset = count < 0 && (!wouldWait || flags == 0);
        return count == 0 || wasReset;
    }

    int socket_;
    bool isConnected_ = false;
};

} // namespace corvane::testing
