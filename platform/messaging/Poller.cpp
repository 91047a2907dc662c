#include "platform/messaging/Poller.h"

#include <array>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace platform {

Poller::Poller() : epoll_(::epoll_create1(EPOLL_CLOEXEC)), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    epoll_event event{};
    event.events = EPOLLIN; // without a watcher: wait() handles this entry itself
    if (isOpen()) ::epoll_ctl(epoll_.number(), EPOLL_CTL_ADD, wake_.number(), &event);
}

bool Poller::isOpen() const {
    return epoll_ && wake_;
}

bool Poller::add(int descriptor, std::uint32_t events, Watcher& watcher) {
    epoll_event event{};
    event.events = events;
    event.data.ptr = &watcher;
    return ::epoll_ctl(epoll_.number(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void Poller::change(int descriptor, std::uint32_t events, Watcher& watcher) {
    epoll_event event{};
    event.events = events;
    event.data.ptr = &watcher;
    ::epoll_ctl(epoll_.number(), EPOLL_CTL_MOD, descriptor, &event);
}

void Poller::remove(int descriptor) {
    ::epoll_ctl(epoll_.number(), EPOLL_CTL_DEL, descriptor, nullptr);
}

void Poller::wait() {
    std::array<epoll_event, 64> events{};
    const int count = ::epoll_wait(epoll_.number(), events.data(), static_cast<int>(events.size()), -1);
    for (int i = 0; i < count; ++i) {
        if (auto* watcher = static_cast<Watcher*>(events[static_cast<std::size_t>(i)].data.ptr)) {
            watcher->ready();
        } else {
            std::uint64_t calls = 0;
            [[maybe_unused]] const auto taken = ::read(wake_.number(), &calls, sizeof calls);
        }
    }
}

void Poller::wake() {
    const std::uint64_t once = 1;
    [[maybe_unused]] const auto given = ::write(wake_.number(), &once, sizeof once);
}

} // namespace platform
