#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/Poller.h"

#include <array>
#include <memory>
#include <unordered_map>

namespace platform {

/// Serves a local port: accepts connections and answers their frames through the port's callout, one at a time.
///
/// No descriptor ever blocks the server, so a slow or silent client delays no other. One round of the run loop accepts
/// all waiting clients, which then take turns with the others, so that no client starves beside busy ones. One thread,
/// that of the run loop.
class PortServer : private Poller::Watcher {
  public:
    explicit PortServer(CFMessagePortRef port);
    ~PortServer() override;

    /// False when no descriptor was left for the server's own needs.
    [[nodiscard]] bool isReady() const { return pause_.timer() >= 0; }
    /// Adds the server's descriptors to the loop's poller, which outlives cancel().
    void schedule(Poller& poller);
    /// Takes them away again, and ends what is under way.
    void cancel();

  private:
    class Connection;

    /// Rings when it is time to try accepting again.
    class Pause final : public Poller::Watcher {
      public:
        explicit Pause(PortServer& server);
        void begin();
        void ready() override;
        [[nodiscard]] int timer() const { return timer_.number(); }

      private:
        PortServer& server_;
        FileDescriptor timer_;
    };

    void ready() override;
    bool acceptOne();
    void resumeAccepting();
    void drop(int socket);

    CFMessagePortRef port_;
    Pause pause_;
    Poller* poller_ = nullptr; ///< while scheduled
    std::unordered_map<int, std::unique_ptr<Connection>> connections_;
    std::array<std::uint8_t, 64 << 10> received_{}; ///< where every read lands first
};

/// What a run loop serves, under the name that callers know.
class CFRunLoopSource final : public PortServer {
  public:
    using PortServer::PortServer;
};

} // namespace platform
