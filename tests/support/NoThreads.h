#pragma once

#include <cstddef>
#include <limits>

#include <pthread.h>

namespace tests {

/// While it lives, no thread can be started: none finds room for its stack.
class NoThreads {
  public:
    NoThreads() {
        ::pthread_getattr_default_np(&before_);
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, std::numeric_limits<std::size_t>::max() / 2 + 1);
        ::pthread_setattr_default_np(&attributes);
        ::pthread_attr_destroy(&attributes);
    }
    ~NoThreads() {
        ::pthread_setattr_default_np(&before_);
        ::pthread_attr_destroy(&before_);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

  private:
    pthread_attr_t before_{};
};

} // namespace tests
