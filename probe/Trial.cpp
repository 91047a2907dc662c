#include "probe/Trial.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/PropertyList.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lumora {

using platform::Dictionary;
using platform::FileDescriptor;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kThrown = "thrown";

[[noreturn]] void run(const std::function<Dictionary()>& code, const TrialLimits& limits, const FileDescriptor& out) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const auto seconds = static_cast<rlim_t>(limits.processor.count());
    const rlimit processor{seconds, seconds + 1};
    ::setrlimit(RLIMIT_CPU, &processor);
    Dictionary told;
    try {
        told = code();
    } catch (const std::exception& thrown) {
        told = Dictionary{{kThrown, std::string("it throws: ") + thrown.what()}};
    } catch (...) {
        told = Dictionary{{kThrown, "it throws what is no exception"}};
    }
    const std::string bytes = encoded(told);
    // Without the destructors of what was loaded, which Settings does not run either.
    ::_exit(out.write(bytes.data(), bytes.size()) ? 0 : 1);
}

/// False when neither has anything to read before that time.
bool awaitEither(const FileDescriptor& one, const FileDescriptor& other, Clock::time_point until) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    std::array<pollfd, 2> awaited{{{one.number(), POLLIN, 0}, {other.number(), POLLIN, 0}}};
    return ::poll(awaited.data(), awaited.size(), int(std::max<std::int64_t>(left, 0))) > 0;
}

/// Reads what there is without waiting, until there is more than the most. Closes the file at its end, which would be
/// there to read for ever.
void readMore(FileDescriptor& from, std::string& into, std::size_t most) {
    std::array<char, 65536> some{};
    ssize_t count = 1;
    while (into.size() <= most && (count = ::read(from.number(), some.data(), some.size())) > 0)
        into.append(some.data(), std::size_t(count));
    if (count == 0) from.close();
}

bool hasEnded(pid_t id, int& status) {
    return ::waitpid(id, &status, WNOHANG) == id;
}

std::string howItWentWrong(int status, const TrialLimits& limits) {
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        return "it hangs: no answer within " + std::to_string(limits.processor.count()) + " s of processor time";
    if (WIFSIGNALED(status)) return std::string("it crashes: ") + ::strsignal(WTERMSIG(status));
    return "it ends the process, with exit status " + std::to_string(WEXITSTATUS(status));
}

Tried understood(const std::string& bytes, int status, const TrialLimits& limits) {
    const auto told = platform::readPropertyList({bytes.begin(), bytes.end()});
    if (status != 0 || bytes.empty()) return {{}, howItWentWrong(status, limits)};
    if (!told || !told.value().dictionary()) return {{}, "it writes into files that are not its own"};
    const platform::Value thrown = told.value()[kThrown];
    return {*told.value().dictionary(), thrown.text() ? std::string(*thrown.text()) : std::string()};
}

} // namespace

std::string encoded(const Dictionary& told) {
    const auto bytes = platform::writePropertyList(told);
    return bytes ? std::string(bytes.value().begin(), bytes.value().end()) : std::string();
}

Tried tryInCopy(const std::function<Dictionary()>& code, const TrialLimits& limits) {
    platform::Pipe pipe(O_CLOEXEC | O_NONBLOCK);
    const pid_t id = pipe ? ::fork() : -1;
    if (id < 0) throw std::system_error(errno, std::generic_category(), "no process");
    if (id == 0) {
        ::fcntl(pipe.writing.number(), F_SETFL, 0);
        run(code, limits, pipe.writing);
    }
    pipe.writing.close();
    const FileDescriptor ending(static_cast<int>(::syscall(SYS_pidfd_open, id, 0)));
    const auto until = Clock::now() + limits.clock;
    std::string bytes;
    int status = 0;
    bool ended = false;
    // What the code leaves running may hold the pipe open, so the end of the process counts.
    while (!(ended = hasEnded(id, status)) && bytes.size() <= limits.mostTold &&
           awaitEither(pipe.reading, ending, until))
        readMore(pipe.reading, bytes, limits.mostTold);
    if (!ended) {
        ::kill(id, SIGKILL);
        ::waitpid(id, &status, 0);
        if (bytes.size() > limits.mostTold) return {{}, "it has too many rows"};
        return {{}, "it hangs: no answer within " + std::to_string(limits.clock.count()) + " s"};
    }
    readMore(pipe.reading, bytes, limits.mostTold);
    return understood(bytes, status, limits);
}

} // namespace lumora
