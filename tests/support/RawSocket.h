#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Value.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

namespace tests {

using platform::Data;

/// The bytes of one frame, put together by hand from what docs/ports.md says.
inline Data frameBytes(std::int32_t messageId, std::int64_t length, const Data& body = {}, const char* magic = "LMP1") {
    Data bytes(magic, magic + 4);
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(messageId) >> shift));
    for (int shift = 0; shift < 64; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(length) >> shift));
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

inline Data frameWith(const Data& body, std::int32_t messageId = 0) {
    return frameBytes(messageId, static_cast<std::int64_t>(body.size()), body);
}

inline Data frameWithoutBody(std::int32_t messageId = 0) {
    return frameBytes(messageId, -1);
}

inline Data bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

/// A bare Unix stream socket that knows nothing of ports. Blocks, but not for ever: a test that waits in vain fails.
class RawSocket {
  public:
    RawSocket() : RawSocket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
    explicit RawSocket(int number) : socket_(number) {
        if (!socket_) throw std::runtime_error("no socket");
        const timeval limit{60, 0};
        ::setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }

    static RawSocket connectedTo(const std::filesystem::path& path) {
        RawSocket socket;
        socket.connect(path);
        return socket;
    }
    static RawSocket listeningAt(const std::filesystem::path& path, int backlog = 16) {
        std::filesystem::create_directories(path.parent_path());
        RawSocket socket;
        const auto address = addressOf(path);
        if (::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(socket.number(), backlog) != 0)
            throw std::runtime_error("cannot listen at " + path.native());
        return socket;
    }
    /// What a killed process leaves behind: a socket file without a listener.
    static void leaveDeadSocketAt(const std::filesystem::path& path) { listeningAt(path); }

    void connect(const std::filesystem::path& path) const {
        const auto address = addressOf(path);
        if (::connect(number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("cannot connect to " + path.native());
    }
    [[nodiscard]] RawSocket accept() const { return RawSocket(::accept(number(), nullptr, nullptr)); }
    /// False when the other end is gone.
    bool send(std::span<const std::uint8_t> data) const {
        while (!data.empty()) {
            const auto count = ::send(number(), data.data(), data.size(), MSG_NOSIGNAL);
            if (count <= 0) return false;
            data = data.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }
    /// So many bytes, or fewer when the other end closed first.
    [[nodiscard]] Data receive(std::size_t size) const {
        Data data(size);
        std::size_t have = 0;
        while (have < size) {
            const auto count = ::recv(number(), data.data() + have, size - have, 0);
            if (count <= 0) break;
            have += static_cast<std::size_t>(count);
        }
        data.resize(have);
        return data;
    }
    /// Whether the other end closed, with nothing more to read. Waits for either.
    [[nodiscard]] bool isClosedByPeer() const {
        std::uint8_t byte = 0;
        const auto count = ::recv(number(), &byte, 1, 0);
        return count == 0 || (count < 0 && errno == ECONNRESET);
    }
    void finishSending() const { ::shutdown(number(), SHUT_WR); }
    void close() { socket_.close(); }
    [[nodiscard]] int number() const { return socket_.number(); }

  private:
    static sockaddr_un addressOf(const std::filesystem::path& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.native().copy(address.sun_path, sizeof address.sun_path - 1);
        return address;
    }

    platform::FileDescriptor socket_;
};

} // namespace tests
