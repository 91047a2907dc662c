#include "platform/messaging/PortFrame.h"

#include "platform/messaging/CFMessagePort.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/uio.h>
#include <type_traits>
#include <utility>

namespace platform {

namespace {

constexpr std::array<std::uint8_t, 4> kMagic = {'L', 'M', 'P', '1'};
constexpr std::size_t kMessageIdAt = 4;
constexpr std::size_t kBodyLengthAt = 8;
constexpr std::int64_t kNoBody = -1;

using Header = std::array<std::uint8_t, PortFrame::headerSize>;

template<class Integer>
Integer littleEndian(const Header& header, std::size_t at) {
    std::make_unsigned_t<Integer> number = 0;
    for (std::size_t i = sizeof(Integer); i-- > 0;)
        number = static_cast<decltype(number)>((number << 8) | header[at + i]);
    return static_cast<Integer>(number);
}

template<class Integer>
void putLittleEndian(Header& header, std::size_t at, Integer value) {
    auto number = static_cast<std::make_unsigned_t<Integer>>(value);
    for (std::size_t i = 0; i < sizeof(Integer); ++i, number >>= 8)
        header[at + i] = static_cast<std::uint8_t>(number & 0xff);
}

} // namespace

PortFrameReader::State PortFrameReader::readHeader() {
    if (!std::equal(kMagic.begin(), kMagic.end(), header_.begin())) return State::broken;
    const auto length = littleEndian<std::int64_t>(header_, kBodyLengthAt);
    if (length < kNoBody || length > kMaximumMessageBody) return State::broken;

    frame_.messageId = littleEndian<std::int32_t>(header_, kMessageIdAt);
    if (length == kNoBody) return State::complete;
    frame_.body.emplace();
    bodyLength_ = static_cast<std::size_t>(length);
    return length == 0 ? State::complete : State::partial;
}

std::size_t PortFrameReader::feed(std::span<const std::uint8_t> bytes) {
    if (state_ != State::partial) return 0;
    const auto offered = bytes.size();

    if (headerBytes_ < header_.size()) {
        const auto part = bytes.first(std::min(header_.size() - headerBytes_, bytes.size()));
        std::copy(part.begin(), part.end(), header_.begin() + static_cast<std::ptrdiff_t>(headerBytes_));
        headerBytes_ += part.size();
        bytes = bytes.subspan(part.size());
        if (headerBytes_ == header_.size()) state_ = readHeader();
    }
    if (headerBytes_ == header_.size() && state_ == State::partial) {
        auto& body = *frame_.body;
        const auto part = bytes.first(std::min(bodyLength_ - body.size(), bytes.size()));
        body.insert(body.end(), part.begin(), part.end());
        bytes = bytes.subspan(part.size());
        if (body.size() == bodyLength_) state_ = State::complete;
    }
    return offered - bytes.size();
}

PortFrame PortFrameReader::take() {
    state_ = State::partial;
    headerBytes_ = 0;
    return std::exchange(frame_, {});
}

PortFrameWriter::PortFrameWriter(std::int32_t messageId, std::optional<Data> body) {
    std::copy(kMagic.begin(), kMagic.end(), header_.begin());
    putLittleEndian(header_, kMessageIdAt, messageId);
    putLittleEndian(header_, kBodyLengthAt, body ? static_cast<std::int64_t>(body->size()) : kNoBody);
    if (body) body_ = std::move(*body);
}

PortFrameWriter::State PortFrameWriter::write(int socket) {
    const auto size = header_.size() + body_.size();
    while (written_ < size) {
        const auto ofHeader = std::min(written_, header_.size());
        const auto ofBody = written_ - ofHeader;
        std::array<iovec, 2> pieces{
            {{header_.data() + ofHeader, header_.size() - ofHeader}, {body_.data() + ofBody, body_.size() - ofBody}}};
        msghdr message{};
        message.msg_iov = pieces.data();
        message.msg_iovlen = pieces.size();
        const auto count = ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            written_ += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            return State::blocked;
        } else if (errno != EINTR) {
            return State::closed;
        }
    }
    return State::done;
}

} // namespace platform
