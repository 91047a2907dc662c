#include "probe/Traps.h"

#include "probe/Channel.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace lumora {
namespace {

constexpr int kFirst = 3;

} // namespace

Traps::Traps() {
    std::array<int, 2> ends{-1, -1};
    // A pipe that is full must not hold up whoever fills it.
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    const int bottom = moveUp(ends[0]);
    if (bottom < kLowDescriptors) return; // without room there are no traps
    bottom_ = bottom;
    for (int number = kFirst; number < kLowDescriptors; ++number)
        if (number != ends[1]) ::dup3(ends[1], number, O_CLOEXEC);
    if (ends[1] >= kLowDescriptors) ::close(ends[1]);
}

std::string Traps::sprung() const {
    std::array<pollfd, kLowDescriptors - kFirst + 1> watched{};
    for (int number = kFirst; number < kLowDescriptors; ++number)
        watched[std::size_t(number - kFirst)] = {number, 0, 0};
    watched.back() = {bottom_, POLLIN, 0};
    if (bottom_ < 0 || ::poll(watched.data(), watched.size(), 0) <= 0) return {};
    return watched.back().revents == POLLIN ? "it writes into files that are not its own"
                                            : "it closes files that are not its own";
}

} // namespace lumora
