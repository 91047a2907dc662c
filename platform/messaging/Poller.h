#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <cstdint>

namespace platform {

/// Waits for many descriptors at once. One thread; wake(): any thread.
class Poller {
  public:
    /// Is called when its descriptor is ready. It may end its own watch, and its own life, but no other watcher's.
    class Watcher {
      public:
        Watcher() = default;
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;
        virtual ~Watcher() = default;
        virtual void ready() = 0;
    };

    Poller();

    /// False when no descriptor was left for the poller: then it watches nothing, and wait() must not be called.
    [[nodiscard]] bool isOpen() const;

    /// `events` are epoll's: EPOLLIN, EPOLLOUT or neither. A watch ends with remove(), which has to come before the
    /// descriptor is closed: while another process holds a copy of the descriptor, closing would not end the watch.
    /// False when the system refuses.
    [[nodiscard]] bool add(int descriptor, std::uint32_t events, Watcher& watcher);
    void change(int descriptor, std::uint32_t events, Watcher& watcher);
    void remove(int descriptor);

    /// Waits until a descriptor is ready or wake() is called, and calls the watchers concerned.
    void wait();
    void wake();

  private:
    FileDescriptor epoll_;
    FileDescriptor wake_;
};

} // namespace platform
