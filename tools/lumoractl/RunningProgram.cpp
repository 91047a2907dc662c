#include "tools/lumoractl/RunningProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace lumora {

using platform::FileDescriptor;
using platform::Result;
using namespace std::chrono_literals;

namespace {

/// A window waits for its messages, and has drafts to write.
constexpr auto kToEnd = 10s;

[[noreturn]] void become(const std::vector<std::string>& command, pid_t parent, int output) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(127); // it ended before the call above
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    if (output >= 0) ::dup2(output, STDOUT_FILENO);
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    ::execv(words.front(), words.data());
    ::_exit(127);
}

bool isReadableBefore(int file, std::chrono::steady_clock::time_point until) {
    pollfd awaited{file, POLLIN, 0};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()).count();
    return left > 0 && ::poll(&awaited, 1, int(left)) > 0;
}

} // namespace

RunningProgram& RunningProgram::operator=(RunningProgram&& other) noexcept {
    end();
    id_ = std::move(other.id_);
    output_ = std::move(other.output_);
    return *this;
}

Result<RunningProgram> RunningProgram::start(const std::vector<std::string>& command, bool piped) {
    if (::access(command.front().c_str(), X_OK) != 0)
        return Result<RunningProgram>::failure(command.front() + " cannot be started: " + std::strerror(errno));
    platform::Pipe pipe;
    const pid_t parent = ::getpid();
    const pid_t id = ::fork();
    if (id == 0) become(command, parent, piped ? pipe.writing.number() : -1);
    if (id < 0) return Result<RunningProgram>::failure(std::string("no process: ") + std::strerror(errno));
    RunningProgram started;
    started.id_ = Id(id);
    if (piped) started.output_ = std::move(pipe.reading);
    return started;
}

std::optional<int> RunningProgram::status() {
    int status = 0;
    if (id_.number < 0) return 0;
    if (::waitpid(id_.number, &status, WNOHANG) != id_.number) return std::nullopt;
    id_.number = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

std::string RunningProgram::firstLine(std::chrono::seconds within) const {
    const auto until = std::chrono::steady_clock::now() + within;
    std::string line;
    for (char c = 0; isReadableBefore(output_.number(), until) && ::read(output_.number(), &c, 1) == 1 && c != '\n';)
        line += c;
    return line;
}

void RunningProgram::end() {
    if (id_.number < 0) return;
    const FileDescriptor ending(static_cast<int>(::syscall(SYS_pidfd_open, id_.number, 0)));
    ::kill(id_.number, SIGTERM);
    if (!isReadableBefore(ending.number(), std::chrono::steady_clock::now() + kToEnd)) ::kill(id_.number, SIGKILL);
    while (::waitpid(id_.number, nullptr, 0) < 0 && errno == EINTR) {
    }
    id_.number = -1;
}

} // namespace lumora
