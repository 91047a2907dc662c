#include "tweak/ServedPort.h"

#include "link/Messages.h"
#include "link/Notify.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/PortAddress.h"

#include <array>
#include <chrono>
#include <thread>

#include <sys/socket.h>

using platform::CFMessagePort;
using platform::CFMessagePortCreateRemote;
using platform::CFMessagePortSendRequest;
using platform::CFRunLoopRef;
using platform::Data;
using platform::PortAddress;
using platform::Result;
using std::chrono::steady_clock;

namespace lumora {
namespace {

constexpr std::int32_t kProbeId = 1;
constexpr double kProbeTimeout = 1.0;
constexpr std::chrono::seconds kOpeningTimeout{5};
constexpr std::chrono::milliseconds kProbeInterval{2};

/// The run loop that serves the port, once a probe has reached it.
class ServingLoop {
  public:
    void set(CFRunLoopRef loop) {
        const std::lock_guard held(mutex_);
        loop_ = std::move(loop);
    }
    [[nodiscard]] CFRunLoopRef get() const {
        const std::lock_guard held(mutex_);
        return loop_;
    }

  private:
    mutable std::mutex mutex_;
    CFRunLoopRef loop_;
};

/// Whether there are enough for a port: its lock, its socket, a timer and two of its run loop, and one at each end of
/// the probe. With fewer it would not open, or open and never answer, and both are silent.
bool descriptorsAreLeft() {
    std::array<platform::FileDescriptor, 7> needed;
    for (auto& descriptor : needed)
        descriptor = platform::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return static_cast<bool>(needed.back());
}

} // namespace

Result<std::unique_ptr<ServedPort>> ServedPort::open(const std::string& name, Answer answer) {
    using Opened = Result<std::unique_ptr<ServedPort>>;
    const std::string fullName = portName(name);
    const std::string path = (platform::portsFolder() / fullName).string();
    // What port() would keep to itself.
    const auto address = PortAddress::ofName(fullName);
    if (!address) return Opened::failure("cannot open the port " + path + ": its path is too long for a socket");
    if (!address->makeFolders())
        return Opened::failure("cannot open the port " + path +
                               ": its folder cannot be made, or is not a folder of yours alone");
    if (!descriptorsAreLeft())
        return Opened::failure("cannot open the port " + path + ": not enough descriptors are left");

    const auto serving = std::make_shared<ServingLoop>();
    port(name,
         [serving, answer = std::move(answer)](CFMessagePort&, std::int32_t messageId,
                                               const std::optional<Data>& body) -> std::optional<Data> {
             if (messageId == kMessageId) return answer(body);
             if (messageId == kProbeId) serving->set(platform::CFRunLoopGetCurrent());
             return std::nullopt;
         });

    const auto remote = CFMessagePortCreateRemote(fullName);
    const auto deadline = steady_clock::now() + kOpeningTimeout;
    auto result = platform::kCFMessagePortIsInvalid;
    while (steady_clock::now() < deadline) {
        result = CFMessagePortSendRequest(*remote, kProbeId, std::nullopt, kProbeTimeout, kProbeTimeout, nullptr);
        if (CFRunLoopRef loop = serving->get()) return std::unique_ptr<ServedPort>(new ServedPort(std::move(loop)));
        if (result == platform::kCFMessagePortSuccess) return Opened::failure("another tweak holds the port " + path);
        std::this_thread::sleep_for(kProbeInterval);
    }
    if (result == platform::kCFMessagePortSendTimeout || result == platform::kCFMessagePortReceiveTimeout)
        return Opened::failure("another tweak holds the port " + path + " and does not answer");
    return Opened::failure("cannot open the port " + path + ": its socket or lock file cannot be used");
}

ServedPort::ServedPort(CFRunLoopRef loop) : loop_(std::move(loop)) {
}

ServedPort::~ServedPort() {
    platform::CFRunLoopStop(loop_);
}

} // namespace lumora
