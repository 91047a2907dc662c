#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"
#include "platform/messaging/PortAddress.h"

#include <memory>
#include <sys/types.h>
#include <utility>

namespace platform {

/// The listening socket of a local port, and the claim to its name.
///
/// The claim is a lock on a file beside the socket, held as long as this object lives. Only its holder may replace the
/// socket file, so two starting processes never both take over a dead process's socket. One thread at a time.
class PortListener {
  public:
    /// Fails when a live port has the name, or no socket can stand there.
    [[nodiscard]] static Result<std::unique_ptr<PortListener>> open(const PortAddress& address);
    /// Removes the socket file, if that is still its own.
    ~PortListener();
    PortListener(const PortListener&) = delete;
    PortListener& operator=(const PortListener&) = delete;

    /// Non-blocking.
    [[nodiscard]] int socket() const { return socket_.number(); }

  private:
    explicit PortListener(PortAddress address) : address_(std::move(address)) {}
    /// The steps of opening: 0 or the error number, which is EADDRINUSE when the name is taken.
    [[nodiscard]] int lock();
    [[nodiscard]] int removeDeadSocket() const;
    [[nodiscard]] int listen();

    PortAddress address_;
    FileDescriptor lock_; ///< outlives the socket, so that the name is given up last
    FileDescriptor socket_;
    dev_t device_ = 0; ///< with file_, tells our socket file from a later one
    ino_t file_ = 0;   ///< zero while there is none
};

} // namespace platform
