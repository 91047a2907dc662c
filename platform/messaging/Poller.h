#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <cstdint>

namespace platform {

/// Waits for many descriptors at once, on one thread; wake() alone may come from another.
class Poller {
  public:
    /// Is called when its descriptor is ready. It may end its own watching, and its own life, but no other's.
    class Watcher {
      public:
        Watcher() = default;
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;
        virtual ~Watcher() = default;
        virtual void ready() = 0;
    };

    Poller();

    /// False when no descriptor was left for it: it watches nothing then, and must not be waited on.
    [[nodiscard]] bool isOpen() const;

    /// `events` are epoll's: EPOLLIN, EPOLLOUT or neither. Watching ends with remove(), which has to come before the
    /// descriptor is closed: another process may hold a copy, and with it the watch would go on.
    [[nodiscard]] bool add(int descriptor, std::uint32_t events, Watcher& watcher);
    void change(int descriptor, std::uint32_t events, Watcher& watcher);
    void remove(int descriptor);

    /// Waits until something is ready or wake() was called, and calls the watchers concerned.
    void wait();
    void wake();

  private:
    FileDescriptor epoll_;
    FileDescriptor wake_;
};

} // namespace platform
