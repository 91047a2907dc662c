#include "platform/foundation/ChildProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace platform {
namespace {

using std::chrono::nanoseconds;
using std::chrono::steady_clock;

/// In bytes, of what a child prints.
constexpr std::size_t kMostKept = 4096;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

/// Two ends that are joined.
struct Ends {
    Ends() {
        int ends[2];
        // Sockets, since writing to a closed one need not raise a signal.
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
        ours = FileDescriptor(ends[0]);
        theirs = FileDescriptor(ends[1]);
    }
    explicit operator bool() const { return static_cast<bool>(ours); }

    FileDescriptor ours;
    FileDescriptor theirs;
};

/// Everything that the child does before it becomes another program. All of it is prepared: in the child of a process
/// with threads, only what is safe in a signal handler may be called.
struct Birth {
    pid_t parent = 0;
    std::array<int, 3> standard{};
    int fault = -1; ///< where to tell why the program does not start
    std::array<std::pair<decltype(RLIMIT_AS), rlimit>, 4> limits{};
    sigset_t noSignals{};
    char* const* arguments = nullptr;

    [[noreturn]] void run() const {
        become();
        const int why = errno;
        std::ignore = ::write(fault, &why, sizeof why);
        ::_exit(127);
    }

  private:
    void become() const {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(127); // the parent died before the call above
        for (int number = 1; number < NSIG; ++number)
            std::signal(number, SIG_DFL);
        // First out of the way: any of these may stand in the place of another.
        std::array<int, 3> moved{};
        for (std::size_t i = 0; i < standard.size(); ++i)
            moved[i] = ::fcntl(standard[i], F_DUPFD_CLOEXEC, 3);
        for (std::size_t i = 0; i < standard.size(); ++i)
            if (::dup2(moved[i], int(i)) < 0) return;
        // Descriptors of ours are closed on exec anyway; this closes those that libraries left open.
        if (::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0) return;
        for (const auto& [what, limit] : limits)
            if (::setrlimit(what, &limit) != 0) return;
        ::sigprocmask(SIG_SETMASK, &noSignals, nullptr);
        ::execv(arguments[0], arguments);
    }
};

/// Never beyond the limits of this process.
rlimit limitTo(decltype(RLIMIT_AS) what, std::uint64_t most, std::uint64_t grace = 0) {
    rlimit limit{};
    ::getrlimit(what, &limit);
    if (most == 0) return limit;
    limit.rlim_max = std::min<rlim_t>(limit.rlim_max, most + grace);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, most);
    return limit;
}

/// The child's number, or why it did not become the program.
Result<pid_t> give(Birth& birth) {
    Ends fault;
    if (!fault) return Result<pid_t>::failure(std::strerror(errno));
    birth.fault = fault.theirs.number();
    // No handler of this process may run in the child.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t id = ::fork();
    if (id == 0) birth.run();
    const int refused = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (id < 0) return Result<pid_t>::failure(std::strerror(refused));
    ::setpgid(id, id); // here and in the child, since either may run first
    fault.theirs.close();
    int why = 0;
    ssize_t heard = 0;
    while ((heard = ::read(fault.ours.number(), &why, sizeof why)) < 0 && errno == EINTR) {
    }
    if (heard == 0) return id;
    while (::waitpid(id, nullptr, 0) < 0 && errno == EINTR) {
    }
    return Result<pid_t>::failure(std::string(birth.arguments[0]) + " does not start: " + std::strerror(why));
}

} // namespace

Result<std::unique_ptr<ChildProcess>> ChildProcess::start(const std::vector<std::string>& command,
                                                          const ChildLimits& limits) {
    using Started = Result<std::unique_ptr<ChildProcess>>;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    Ends input;
    Ends output;
    Ends prints;
    if (!input || !output || !prints) return Started::failure(std::strerror(errno));
    Birth birth;
    birth.parent = ::getpid();
    birth.standard = {input.theirs.number(), output.theirs.number(), prints.theirs.number()};
    birth.arguments = arguments.data();
    ::sigemptyset(&birth.noSignals);
    const auto seconds = static_cast<std::uint64_t>(limits.processor.count());
    birth.limits = {{{RLIMIT_CORE, {0, 0}},
                     {RLIMIT_CPU, limitTo(RLIMIT_CPU, seconds, 1)},
                     {RLIMIT_AS, limitTo(RLIMIT_AS, kSanitized ? 0 : limits.memory)},
                     {RLIMIT_NOFILE, limitTo(RLIMIT_NOFILE, limits.descriptors)}}};
    const Result<pid_t> id = give(birth);
    if (!id) return Started::failure(id.error());

    std::unique_ptr<ChildProcess> child(new ChildProcess);
    child->id_ = id.value();
    ::clock_getcpuclockid(id.value(), &child->clock_);
    child->ending_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, id.value(), 0)));
    child->input_ = std::move(input.ours);
    child->output_ = std::move(output.ours);
    child->prints_ = std::move(prints.ours);
    if (!child->ending_) return Started::failure(std::string("a process cannot be watched: ") + std::strerror(errno));
    return child;
}

ChildProcess::~ChildProcess() {
    end();
}

ChildProcess::Patience ChildProcess::patience(nanoseconds byTheClock, nanoseconds processor, int stop) const {
    return {steady_clock::now() + byTheClock, processorTime() + processor, stop};
}

bool ChildProcess::send(std::string_view bytes, const Patience& patience) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(input_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno == EAGAIN) {
            if (wait(input_.number(), POLLOUT, patience) != Heard::something) return false;
        } else if (errno != EINTR)
            return false;
    }
    return true;
}

ChildProcess::Heard ChildProcess::receive(std::string& into, std::size_t most, const Patience& patience) {
    if (into.size() >= most) return Heard::enough;
    for (;;) {
        if (const Heard heard = wait(output_.number(), POLLIN, patience); heard != Heard::something) return heard;
        const std::size_t before = into.size();
        into.resize(std::min(most, before + 65536));
        const ssize_t got = ::recv(output_.number(), into.data() + before, into.size() - before, MSG_DONTWAIT);
        const int why = errno;
        into.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got > 0) return Heard::something;
        if (got == 0 || (why != EAGAIN && why != EINTR)) return Heard::end;
    }
}

ChildProcess::Heard ChildProcess::awaitEnd(const Patience& patience) {
    return wait(-1, 0, patience);
}

/// Until the file is ready, the child has ended or its time is over.
ChildProcess::Heard ChildProcess::wait(int file, short events, const Patience& patience) {
    using std::chrono::milliseconds;
    constexpr milliseconds slice(20); // how far a child of one thread may overrun its processor time; of many, further
    for (;;) {
        // The end comes first in the list: a child seen to have ended before its file is looked at has said everything.
        std::array<pollfd, 4> watched{pollfd{ending_.number(), POLLIN, 0}, pollfd{file, events, 0},
                                      pollfd{prints_.number(), POLLIN, 0}, pollfd{patience.stop, POLLIN, 0}};
        const auto left = std::chrono::ceil<milliseconds>(patience.until - steady_clock::now());
        const auto longest = std::clamp(left, milliseconds(0), slice);
        const int ready = ::poll(watched.data(), watched.size(), static_cast<int>(longest.count()));
        if (ready > 0 && watched[2].revents != 0) takePrints();
        if (ready > 0 && watched[1].revents != 0) return Heard::something;
        if (ready > 0 && watched[0].revents != 0) return Heard::end; // and nothing more is to be read
        if (left.count() <= 0 || (ready > 0 && watched[3].revents != 0)) return Heard::tooLate;
        if (processorTime() >= patience.processor) return Heard::tooCostly;
    }
}

void ChildProcess::takePrints() {
    std::array<char, 4096> block{};
    const ssize_t got = ::recv(prints_.number(), block.data(), block.size(), MSG_DONTWAIT);
    if (got > 0)
        printed_.append(block.data(), std::min(static_cast<std::size_t>(got), kMostKept - printed_.size()));
    else if (got == 0 || (errno != EAGAIN && errno != EINTR))
        prints_.close();
}

nanoseconds ChildProcess::processorTime() const {
    timespec used{};
    // Silent: a child that has ended has no such clock, and nothing left to limit.
    if (id_ < 0 || ::clock_gettime(clock_, &used) != 0) return {};
    return std::chrono::seconds(used.tv_sec) + nanoseconds(used.tv_nsec);
}

int ChildProcess::end() {
    if (id_ < 0) return status_;
    ::kill(-id_, SIGKILL); // first the group: its number is the process's until that has been waited for
    ::kill(id_, SIGKILL);
    while (::waitpid(id_, &status_, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    while (prints_ && printed_.size() < kMostKept) {
        pollfd rest{prints_.number(), POLLIN, 0};
        if (::poll(&rest, 1, 0) <= 0) break;
        takePrints();
    }
    return status_;
}

} // namespace platform
