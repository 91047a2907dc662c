// Linked into the Settings application where what is run is counted: it leaves without its destructors, and tests end
// it by a signal, and either would take along what it has counted. Any thread.
//
//     target_link_options(lumora-settings PRIVATE -Wl,--wrap=_exit)

#include <atomic>
#include <csignal>
#include <semaphore.h>
#include <thread>
#include <unistd.h>

extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int code);
[[noreturn]] void __wrap__exit(int code);
}

namespace {

sem_t asked;

/// Starts with the program. A handler may do next to nothing, so it wakes a thread that may do anything.
struct Ending {
    Ending() {
        ::sem_init(&asked, 0, 0);
        std::thread([] {
            while (::sem_wait(&asked) != 0) {
            }
            _exit(128 + SIGTERM);
        }).detach();
        std::signal(SIGTERM, [](int) { ::sem_post(&asked); });
    }
} const ending;

} // namespace

void __wrap__exit(int code) {
    static std::atomic_flag begun;
    if (begun.test_and_set()) {
        while (true) // another thread writes them down, and ends the process after that
            ::pause();
    }
    __gcov_dump();
    __real__exit(code);
}
