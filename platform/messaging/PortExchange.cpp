#include "platform/messaging/PortExchange.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <utility>

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

Clock::time_point deadlineIn(double seconds) {
    constexpr double week = 7 * 24 * 3600; // longer times, and infinity, would be beyond what a clock counts
    const double bounded = std::isnan(seconds) ? 0 : std::clamp(seconds, 0.0, week);
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(bounded));
}

/// Rounded up, so that nothing times out too early. Zero once the deadline has passed.
template<class Unit>
typename Unit::rep remaining(Clock::time_point deadline) {
    return std::max(std::chrono::ceil<Unit>(deadline - Clock::now()), Unit::zero()).count();
}

/// The receiver is not there, or the name belongs to something other than a port.
bool meansNoPort(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
    case EACCES:
    case EPERM:
    case ECONNREFUSED:
    case EPROTOTYPE:
        return true;
    default:
        return false;
    }
}

} // namespace

CFMessagePortResult PortExchange::send(std::int32_t messageId, const std::optional<Data>& body, double seconds) {
    if (body && std::cmp_greater(body->size(), kMaximumMessageBody)) return kCFMessagePortTransportError;
    const auto deadline = deadlineIn(seconds);
    if (const auto result = connect(deadline); result != kCFMessagePortSuccess) return result;

    PortFrameWriter request(messageId, body);
    while (true) {
        switch (request.write(socket_.number())) {
        case PortFrameWriter::State::done:
            return kCFMessagePortSuccess;
        case PortFrameWriter::State::closed:
            return kCFMessagePortBecameInvalidError;
        case PortFrameWriter::State::blocked:
            if (!waitFor(POLLOUT, deadline)) return kCFMessagePortSendTimeout;
        }
    }
}

CFMessagePortResult PortExchange::connect(Deadline deadline) {
    socket_ = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket_) return kCFMessagePortTransportError;

    int error = address_.connect(socket_.number());
    if (error == EAGAIN) error = waitForBacklog(deadline);
    if (error == EAGAIN) return kCFMessagePortSendTimeout;
    if (meansNoPort(error)) return kCFMessagePortIsInvalid;
    if (error != 0 || !peerIsTrusted(socket_.number())) return kCFMessagePortTransportError;
    return kCFMessagePortSuccess;
}

int PortExchange::waitForBacklog(Deadline deadline) const {
    // A non-blocking socket has nothing to poll for here, while a blocking connect() waits its turn up to the socket's
    // send time-out.
    ::fcntl(socket_.number(), F_SETFL, 0);
    int error = EAGAIN;
    do {
        const auto left = remaining<microseconds>(deadline);
        if (left == 0) return EAGAIN; // to the kernel, zero would mean no limit
        timeval limit{};
        limit.tv_sec = left / 1'000'000;
        limit.tv_usec = left % 1'000'000;
        ::setsockopt(socket_.number(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        error = address_.connect(socket_.number());
    } while (error == EINTR);
    return error;
}

CFMessagePortResult PortExchange::receive(double seconds) {
    const auto deadline = deadlineIn(seconds);
    std::array<std::uint8_t, 16 << 10> buffer; // NOLINT(*-member-init): filled by recv()
    while (reader_.state() == PortFrameReader::State::partial) {
        if (!waitFor(POLLIN, deadline)) return kCFMessagePortReceiveTimeout;
        const auto count = ::recv(socket_.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count > 0) {
            reader_.feed(std::span(buffer).first(static_cast<std::size_t>(count)));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            return kCFMessagePortBecameInvalidError;
        }
    }
    const bool whole = reader_.state() == PortFrameReader::State::complete;
    return whole ? kCFMessagePortSuccess : kCFMessagePortTransportError;
}

bool PortExchange::waitFor(short events, Deadline deadline) const {
    pollfd waiting{socket_.number(), events, 0};
    while (const auto left = remaining<milliseconds>(deadline)) {
        if (::poll(&waiting, 1, static_cast<int>(left)) > 0) return true;
    }
    return false; // even when the peer always has one more byte ready
}

} // namespace platform
