#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "platform/messaging/CFRunLoop.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lumora {

/// One port of the tweak, known to be open and to be our own.
///
/// Opening a port is silent, and a name that is taken yields none. So the port is asked, with a message of an id that
/// no message of the bundle has, and only an answer that ran in this process counts.
class ServedPort {
  public:
    /// Answers a message, on the port's own thread.
    using Answer = std::function<std::optional<platform::Data>(const std::optional<platform::Data>& body)>;

    /// Opens the port "com.nevo.lumora/" + name and returns once it answers. Fails when another process has the port,
    /// when the ports folder cannot be used, or when too few descriptors are left.
    [[nodiscard]] static platform::Result<std::unique_ptr<ServedPort>> open(const std::string& name, Answer answer);
    ServedPort(const ServedPort&) = delete;
    ServedPort& operator=(const ServedPort&) = delete;
    /// Stops the port's run loop. A message in hand is still answered; the thread ends soon after.
    ~ServedPort();

  private:
    explicit ServedPort(platform::CFRunLoopRef loop);
    platform::CFRunLoopRef loop_;
};

} // namespace lumora
