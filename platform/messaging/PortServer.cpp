#include "platform/messaging/PortServer.h"

#include "platform/messaging/MessagePort.h"
#include "platform/messaging/PortFrame.h"

#include <cerrno>
#include <span>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <utility>

namespace platform {

namespace {

/// As many as can be pending at once. A client that connects meanwhile waits for the next round, so that endless
/// newcomers do not keep the others from being served.
constexpr int kMostAcceptedInARound = SOMAXCONN;

} // namespace

/// One client: reads its requests and writes the replies, in turn. While a reply waits for the client to read, nothing
/// more is read from it.
class PortServer::Connection final : public Poller::Watcher {
  public:
    Connection(PortServer& server, FileDescriptor socket) : server_(server), socket_(std::move(socket)) {}

    void ready() override {
        if (!proceed()) return server_.drop(socket_.number()); // ends this object
        if (std::exchange(awaited_, events()) != events()) server_.poller_->change(socket_.number(), awaited_, *this);
    }

    /// Reads nothing yet: earlier clients come first.
    [[nodiscard]] bool begin() { return server_.poller_->add(socket_.number(), awaited_, *this); }

  private:
    using Bytes = std::span<const std::uint8_t>;

    [[nodiscard]] std::uint32_t events() const { return reply_ ? EPOLLOUT : EPOLLIN; }

    /// These return whether the connection goes on.
    bool proceed() { return reply_ ? writeReply() : read(); }

    bool read() {
        auto& buffer = server_.received_;
        const auto count = ::recv(socket_.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count < 0) return errno == EAGAIN || errno == EINTR;
        if (count == 0) return false;
        return take(Bytes(buffer).first(static_cast<std::size_t>(count)));
    }

    bool take(Bytes bytes) {
        while (!bytes.empty()) {
            bytes = bytes.subspan(reader_.feed(bytes));
            if (reader_.state() == PortFrameReader::State::broken) return false;
            if (reader_.state() == PortFrameReader::State::partial) return true;
            if (!answer(reader_.take())) return false;
            if (reply_) {
                unread_.assign(bytes.begin(), bytes.end());
                return true;
            }
        }
        return true;
    }

    bool answer(const PortFrame& request) {
        server_.port_->sender = peerOf(socket_.number());
        auto body = server_.port_->callout(*server_.port_, request.messageId, request.body);
        if (body && std::cmp_greater(body->size(), kMaximumMessageBody)) return false;
        PortFrameWriter reply(0, std::move(body));
        const auto state = reply.write(socket_.number());
        if (state == PortFrameWriter::State::blocked) reply_.emplace(std::move(reply));
        return state != PortFrameWriter::State::closed;
    }

    bool writeReply() {
        const auto state = reply_->write(socket_.number());
        if (state != PortFrameWriter::State::done) return state == PortFrameWriter::State::blocked;
        reply_.reset();
        return take(std::exchange(unread_, {}));
    }

    PortServer& server_;
    FileDescriptor socket_;
    std::uint32_t awaited_ = EPOLLIN; ///< the events that the poller watches for
    PortFrameReader reader_;
    std::optional<PortFrameWriter> reply_; ///< while part of it is unwritten
    Data unread_;                          ///< what came behind that reply's request in the same read
};

PortServer::Pause::Pause(PortServer& server)
    : server_(server), timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
}

void PortServer::Pause::begin() {
    constexpr itimerspec tenthOfASecond{{0, 0}, {0, 100'000'000}};
    ::timerfd_settime(timer_.number(), 0, &tenthOfASecond, nullptr);
}

void PortServer::Pause::ready() {
    std::uint64_t rings = 0;
    [[maybe_unused]] const auto taken = ::read(timer_.number(), &rings, sizeof rings);
    server_.resumeAccepting();
}

PortServer::PortServer(CFMessagePortRef port) : port_(std::move(port)), pause_(*this) {
}

PortServer::~PortServer() = default;

void PortServer::schedule(Poller& poller) {
    if (poller_ != nullptr) return;
    if (poller.add(pause_.timer(), EPOLLIN, pause_) && poller.add(port_->listener->socket(), EPOLLIN, *this))
        poller_ = &poller;
}

void PortServer::cancel() {
    if (poller_ == nullptr) return;
    for (const auto& [socket, connection] : connections_)
        poller_->remove(socket);
    connections_.clear();
    poller_->remove(port_->listener->socket());
    poller_->remove(pause_.timer());
    poller_ = nullptr;
}

void PortServer::ready() {
    int accepted = 0;
    while (accepted < kMostAcceptedInARound && acceptOne())
        ++accepted;
}

/// Whether another client may be waiting.
bool PortServer::acceptOne() {
    FileDescriptor socket(::accept4(port_->listener->socket(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) {
        const bool exhausted = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
        if (exhausted) {
            // The client stays in the backlog and the socket readable; without a pause, the loop would spin.
            poller_->change(port_->listener->socket(), 0, *this);
            pause_.begin();
        }
        return false;
    }
    if (!peerIsTrusted(socket.number())) return true;

    const int number = socket.number();
    auto connection = std::make_unique<Connection>(*this, std::move(socket));
    if (connection->begin()) connections_.emplace(number, std::move(connection));
    return true;
}

// A process that is just being started also has the socket for a moment, and while it has, closing alone would not end
// the poller's watch.
void PortServer::drop(int socket) {
    poller_->remove(socket);
    connections_.erase(socket);
}

void PortServer::resumeAccepting() {
    poller_->change(port_->listener->socket(), EPOLLIN, *this);
}

} // namespace platform
