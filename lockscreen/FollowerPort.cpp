#include "lockscreen/FollowerPort.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"

#include <algorithm>
#include <future>
#include <limits>
#include <system_error>
#include <utility>

#include <unistd.h>

using platform::Data;
using platform::Dictionary;
using platform::Value;

namespace lumora {

FollowerPort::FollowerPort(std::int64_t number, std::function<void()> told)
    : name_("followers/" + std::to_string(::getpid()) + "-" + std::to_string(number)),
      lockFile_(platform::portsFolder() / (portName(name_) + ".lock")), told_(std::move(told)) {
    std::promise<platform::CFRunLoopRef> opened;
    try {
        thread_ = std::thread([this, &opened] {
            // The thread has the only reference, and so it closes the port.
            const auto port = platform::CFMessagePortCreateLocal(
                portName(name_),
                [this](auto&, std::int32_t id, const std::optional<Data>& body) -> std::optional<Data> {
                    if (id == kMessageId) hear(body);
                    return std::nullopt;
                });
            const auto source = platform::CFMessagePortCreateRunLoopSource(port);
            platform::CFRunLoopAddSource(platform::CFRunLoopGetCurrent(), source);
            opened.set_value(source ? platform::CFRunLoopGetCurrent() : nullptr);
            platform::CFRunLoopRun();
        });
    } catch (const std::system_error&) { // without a thread there is no port
        return;
    }
    loop_ = opened.get_future().get();
}

FollowerPort::~FollowerPort() {
    if (loop_) platform::CFRunLoopStop(loop_);
    if (thread_.joinable()) thread_.join();
    // The name belongs to this process alone, so nobody can be about to lock the file.
    std::error_code ignored;
    if (loop_) std::filesystem::remove(lockFile_, ignored);
}

void FollowerPort::beginAnew() {
    const std::lock_guard held(mutex_);
    pending_ = {};
    revision_ = std::numeric_limits<std::int64_t>::min();
    bytes_ = 0;
}

void FollowerPort::skip(std::int64_t revision) {
    const std::lock_guard held(mutex_);
    if (!revision_ || *revision_ > revision) return;
    pending_ = {};
    revision_ = revision;
}

void FollowerPort::end() {
    const std::lock_guard held(mutex_);
    pending_ = {};
    revision_.reset();
    bytes_ = 0;
}

std::optional<FollowerPort::Told> FollowerPort::take() {
    const std::lock_guard held(mutex_);
    if (pending_.empty() || !revision_) return {};
    return Told{std::exchange(pending_, {}), *revision_};
}

bool FollowerPort::isOverrun() const {
    const std::lock_guard held(mutex_);
    return bytes_ > kMostTold;
}

bool FollowerPort::hasRoomFor(std::size_t bytes) {
    const std::lock_guard held(mutex_);
    if (!revision_) return false;
    bytes_ += bytes;
    if (bytes_ <= kMostTold) return true;
    pending_ = {};
    revision_.reset();
    return false;
}

void FollowerPort::hear(const std::optional<Data>& body) {
    if (!body) return;
    if (!hasRoomFor(body->size())) {
        if (isOverrun()) told_();
        return;
    }
    const Value message = platform::NSKeyedUnarchiver::unarchiveObjectWithData(*body)[kObjectEntry];
    const auto revision = message[kRevisionEntry].integer();
    const Value settings = message[kSettingsEntry];
    if (!revision || !settings.dictionary()) return;
    {
        const std::lock_guard held(mutex_);
        if (!revision_ || *revision <= *revision_) return;
        revision_ = *revision;
        for (const auto& [key, value] : *settings.dictionary())
            pending_.set(key, value);
    }
    told_();
}

} // namespace lumora
