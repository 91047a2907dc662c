#include "probe/Traps.h"

#include "probe/Channel.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace lumora {
namespace {

constexpr int kFirst = 3;

} // namespace

Traps::Traps() {
    // A full pipe must not hold up the code that fills it.
    platform::Pipe pipe(O_CLOEXEC | O_NONBLOCK);
    platform::FileDescriptor bottom = moveUp(std::move(pipe.reading));
    if (bottom.number() < kLowDescriptors) return; // without room there are no traps
    bottom_ = std::move(bottom);
    for (int number = kFirst; number < kLowDescriptors; ++number)
        if (number != pipe.writing.number()) ::dup3(pipe.writing.number(), number, O_CLOEXEC);
    if (pipe.writing.number() < kLowDescriptors) std::ignore = pipe.writing.release(); // it is one of them
}

platform::Result<void> Traps::check() const {
    std::array<pollfd, kLowDescriptors - kFirst + 1> watched{};
    for (int number = kFirst; number < kLowDescriptors; ++number)
        watched[std::size_t(number - kFirst)] = {number, 0, 0};
    watched.back() = {bottom_.number(), POLLIN, 0};
    if (!bottom_ || ::poll(watched.data(), watched.size(), 0) <= 0) return {};
    return platform::Result<void>::failure(watched.back().revents == POLLIN
                                               ? "it writes into files that are not its own"
                                               : "it closes files that are not its own");
}

void Traps::clear() const {
    std::array<char, 4096> some{};
    while (bottom_ && ::read(bottom_.number(), some.data(), some.size()) > 0) {
    }
}

} // namespace lumora
