#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/PortAddress.h"
#include "platform/messaging/PortFrame.h"

#include <chrono>

namespace platform {

/// One request and its reply on a connection of their own, from the client's side. One thread, which waits.
class PortExchange {
  public:
    explicit PortExchange(const PortAddress& address) : address_(address) {}

    /// Connects and writes the whole request within so many seconds.
    CFMessagePortResult send(std::int32_t messageId, const std::optional<Data>& body, double seconds);
    /// Waits for the whole reply, so many seconds at most, even if it drips.
    CFMessagePortResult receive(double seconds);
    [[nodiscard]] std::optional<Data> takeReply() { return reader_.take().body; }

  private:
    using Deadline = std::chrono::steady_clock::time_point;

    CFMessagePortResult connect(Deadline deadline);
    /// Waits for a place in a full backlog: 0 or the error number, EAGAIN when none comes free in time.
    [[nodiscard]] int waitForBacklog(Deadline deadline) const;
    /// False when the deadline passed first.
    [[nodiscard]] bool waitFor(short events, Deadline deadline) const;

    const PortAddress& address_;
    FileDescriptor socket_;
    PortFrameReader reader_;
};

} // namespace platform
