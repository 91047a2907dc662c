#include "platform/messaging/CFRunLoop.h"

#include "platform/messaging/PortServer.h"

#include <atomic>
#include <vector>

namespace platform {

class CFRunLoop {
  public:
    CFRunLoop() = default;
    CFRunLoop(const CFRunLoop&) = delete;
    CFRunLoop& operator=(const CFRunLoop&) = delete;
    ~CFRunLoop() { cancelSources(); }

    void add(const CFRunLoopSourceRef& source) {
        source->schedule(poller_);
        sources_.push_back(source);
    }

    void run() {
        while (!sources_.empty() && poller_.isOpen() && !stopped_.exchange(false))
            poller_.wait();
        cancelSources();
    }

    void stop() {
        stopped_ = true;
        poller_.wake();
    }

  private:
    void cancelSources() {
        for (const auto& source : sources_)
            source->cancel();
        sources_.clear();
    }

    Poller poller_;
    std::vector<CFRunLoopSourceRef> sources_;
    std::atomic<bool> stopped_ = false;
};

CFRunLoopRef CFRunLoopGetCurrent() {
    thread_local const auto loop = std::make_shared<CFRunLoop>();
    return loop;
}

void CFRunLoopAddSource(const CFRunLoopRef& loop, const CFRunLoopSourceRef& source) {
    if (source) loop->add(source);
}

void CFRunLoopRun() {
    CFRunLoopGetCurrent()->run();
}

void CFRunLoopStop(const CFRunLoopRef& loop) {
    loop->stop();
}

} // namespace platform
