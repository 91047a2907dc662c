#pragma once

#include "platform/foundation/Value.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace platform {

/// One request or reply as it stands on the wire: a header of 16 bytes, little-endian, and the body.
struct PortFrame {
    static constexpr std::size_t headerSize = 16;

    std::int32_t messageId = 0;
    std::optional<Data> body;

    friend bool operator==(const PortFrame&, const PortFrame&) = default;
};

/// Puts frames together from a stream of bytes that comes in pieces of any size.
///
///     while (!bytes.empty() && reader.state() == State::partial) {
///         bytes = bytes.subspan(reader.feed(bytes));
///         if (reader.state() == State::complete) answer(reader.take());
///     }
///
/// The bytes come from another process, so memory grows with what has arrived, not with what the header promises. One
/// thread.
class PLATFORM_EXPORT PortFrameReader {
  public:
    enum class State : std::uint8_t { partial, complete, broken };

    [[nodiscard]] State state() const { return state_; }
    /// Takes bytes up to the end of the current frame and returns how many; none unless the state is partial.
    std::size_t feed(std::span<const std::uint8_t> bytes);
    /// Hands out the complete frame and begins the next one.
    PortFrame take();

  private:
    [[nodiscard]] State readHeader();

    State state_ = State::partial;
    std::array<std::uint8_t, PortFrame::headerSize> header_{};
    std::size_t headerBytes_ = 0;
    std::size_t bodyLength_ = 0;
    PortFrame frame_;
};

/// Writes one frame to a stream socket that may take it in pieces. One thread.
class PortFrameWriter {
  public:
    enum class State : std::uint8_t {
        done,    ///< every byte is with the kernel
        blocked, ///< the other end must read first
        closed,  ///< the other end is gone
    };

    PortFrameWriter(std::int32_t messageId, std::optional<Data> body);

    /// Writes as much as goes without waiting.
    State write(int socket);

  private:
    std::array<std::uint8_t, PortFrame::headerSize> header_{};
    Data body_;
    std::size_t written_ = 0;
};

} // namespace platform
