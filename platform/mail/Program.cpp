#include "platform/mail/Program.h"

#include "platform/foundation/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace platform {

using Ended = Result<void>;
namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostComplaint = 4000; // in bytes; longer ones are not worth reading

bool isProgram(const fs::path& file) {
    struct stat facts {};
    return ::stat(file.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && ::access(file.c_str(), X_OK) == 0;
}

/// In a group of its own. The program inherits the environment and these three descriptors, and nothing else.
Result<pid_t> spawn(const std::vector<std::string>& command, const char* input, int complaints) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, input, O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (complaints >= 0)
        posix_spawn_file_actions_adddup2(&files, complaints, STDERR_FILENO);
    else
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t id = -1;
    const int refused = posix_spawn(&id, arguments.front(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (refused != 0) return Result<pid_t>::failure(command.front() + " does not start: " + std::strerror(refused));
    return id;
}

/// What a program writes to its standard error.
class Complaint {
  public:
    explicit Complaint(FileDescriptor from) : from_(std::move(from)) {}

    /// The reading end; negative once the other end is closed.
    [[nodiscard]] int descriptor() const { return from_.number(); }
    /// Takes what is there.
    void take() {
        char some[4096];
        const ssize_t count = ::read(from_.number(), some, sizeof some);
        if (count > 0 && text_.size() < kMostComplaint) text_.append(some, static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) from_.close();
    }
    /// Without white space at the end.
    [[nodiscard]] std::string text() const {
        const std::string text = text_.substr(0, kMostComplaint);
        return text.substr(0, text.find_last_not_of(" \r\n\t") + 1);
    }

  private:
    FileDescriptor from_;
    std::string text_;
};

/// Whether a program has ended; waitpid() can still ask how.
bool hasEnded(pid_t id) {
    siginfo_t facts{};
    return ::waitid(P_PID, static_cast<id_t>(id), &facts, WEXITED | WNOHANG | WNOWAIT) == 0 && facts.si_pid == id;
}

/// Waits for the end of a program and reads its complaint; false when the time is over. Waits for the program itself,
/// not for the end of its standard error, which a child in the background may hold open.
bool waitFor(pid_t id, Complaint& complaint, std::chrono::milliseconds atMost) {
    const FileDescriptor program(static_cast<int>(::syscall(SYS_pidfd_open, id, 0)));
    // On systems without descriptors for processes, asks now and then.
    const auto mostAtOnce = program ? atMost : std::chrono::milliseconds(20);
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd events[] = {{program.number(), POLLIN, 0}, {complaint.descriptor(), POLLIN, 0}};
        if (left.count() <= 0) return false;
        if (::poll(events, 2, static_cast<int>(std::min(left, mostAtOnce).count())) < 0 && errno != EINTR) return false;
        if (events[1].revents != 0) complaint.take();
        if (events[1].revents == 0 && hasEnded(id)) return true;
    }
}

} // namespace

std::optional<fs::path> programNamed(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (name.find('/') != std::string::npos) return isProgram(name) ? std::optional<fs::path>(name) : std::nullopt;
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (!folder.empty() && isProgram(fs::path(folder) / name)) return fs::path(folder) / name;
    return std::nullopt;
}

Ended runProgram(const std::vector<std::string>& command, const fs::path& input, std::chrono::milliseconds atMost) {
    Pipe errors(O_CLOEXEC | O_NONBLOCK);
    if (!errors) return Ended::failure(std::strerror(errno));
    const Result<pid_t> id = spawn(command, input.c_str(), errors.writing.number());
    errors.writing.close();
    if (!id) return Ended::failure(id.error());

    Complaint complaint(std::move(errors.reading));
    const bool inTime = waitFor(id.value(), complaint, atMost);
    if (!inTime) ::kill(-id.value(), SIGKILL);
    int status = 0;
    while (::waitpid(id.value(), &status, 0) < 0 && errno == EINTR) {
    }
    if (inTime && WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};

    std::string why = command.front();
    if (!inTime)
        why += " did not end in time";
    else if (WIFSIGNALED(status))
        why += " was ended by signal " + std::to_string(WTERMSIG(status));
    else
        why += " ended with " + std::to_string(WEXITSTATUS(status));
    const std::string text = complaint.text();
    return Ended::failure(text.empty() ? why : why + ": " + text);
}

Ended startProgram(const std::vector<std::string>& command) {
    const Result<pid_t> id = spawn(command, "/dev/null", -1);
    if (!id) return Ended::failure(id.error());
    // Waits for its end, hours later perhaps, so that the system can forget it.
    try {
        std::thread([child = id.value()] { ::waitpid(child, nullptr, 0); }).detach();
    } catch (const std::system_error&) { // the program runs, and that was the task
    }
    return {};
}

} // namespace platform
