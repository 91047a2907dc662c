#include "tools/lumoractl/PluginProbe.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/Unicode.h"
#include "tools/json/Json.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// Of what a plug-in prints, and of a report, nothing beyond this is kept.
constexpr std::size_t kMostKept = std::size_t{1} << 20;
constexpr std::size_t kMostShown = 200;

Dictionary reportOn(const std::filesystem::path& bundle) {
    const Result<Plugin> examined = examine(bundle);
    if (!examined) return {{"skipped", examined.error()}};
    const Plugin& plugin = examined.value();
    Dictionary report{{"name", plugin.name().value_or("")},
                      {"identifier", plugin.identifier().value_or("")},
                      {"appID", plugin.appID().value_or("")}};
    const auto page = plugin.settingsController();
    report.set("settings", static_cast<bool>(page));
    if (!page) report.set("why", page.error());
    return report;
}

/// A pipe whose ends close with this object, at the latest.
class Pipe {
  public:
    Pipe() {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) ends_ = {-1, -1};
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    [[nodiscard]] bool isOpen() const { return ends_[0] >= 0; }
    [[nodiscard]] int in() const { return ends_[1]; }
    [[nodiscard]] int out() const { return ends_[0]; }
    void closeIn() { closeEnd(1); }

  private:
    void closeEnd(std::size_t end) {
        if (ends_[end] >= 0) ::close(std::exchange(ends_[end], -1));
    }
    std::array<int, 2> ends_{-1, -1};
};

/// The child's side: reports over one pipe, and whatever the plug-in prints goes into the other.
[[noreturn]] void examineInChild(const std::filesystem::path& bundle, int report, int printed) {
    ::setpgid(0, 0);                    // what the plug-in starts is ended with it, by the group
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // it alone, should this program be killed before it can end the group
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(printed, STDOUT_FILENO);
    ::dup2(printed, STDERR_FILENO);
    const Result<std::string> json = writeJson(reportOn(bundle), JsonLayout::line);
    std::fflush(nullptr);
    const std::string line = (json ? json.value() : R"({"skipped": "its path is no text"})") + "\n";
    const bool written = ::write(report, line.data(), line.size()) == static_cast<ssize_t>(line.size());
    ::_exit(written ? 0 : 1);
}

/// What came through a pipe so far.
struct Received {
    std::string text;
    bool ended = false;

    void take(int from) {
        std::array<char, 4096> block{};
        const ssize_t got = ::read(from, block.data(), block.size());
        if (got < 0 && errno == EINTR) return;
        if (got <= 0)
            ended = true;
        else
            text.append(block.data(), std::min(static_cast<std::size_t>(got), kMostKept - text.size()));
    }
};

/// A child process in a group of its own; gone, with all that it started and left in the group, when this object goes.
class Child {
  public:
    explicit Child(pid_t id) : id_(id), ending_(static_cast<int>(::syscall(SYS_pidfd_open, id, 0))) {
        ::setpgid(id, id); // here and in the child, since either may run first
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        end();
        if (ending_ >= 0) ::close(ending_);
    }
    /// Becomes readable when the process has ended.
    [[nodiscard]] int ending() const { return ending_; }

    /// Ends what has not ended; how the process itself did.
    int end() {
        if (id_ < 0) return 0;
        ::kill(-id_, SIGKILL); // first the group: its number is the process's until that has been waited for
        ::kill(id_, SIGKILL);
        int status = 0;
        while (::waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = -1;
        return status;
    }

  private:
    pid_t id_;
    int ending_;
};

enum class Outcome : unsigned char { reported, tooLong, ended, late };

/// Reads both pipes until the report is there or longer than is kept, the process has ended or the time is over.
Outcome receive(const Child& child, const Pipe& reports, const Pipe& prints, std::chrono::milliseconds limit,
                Received& report, Received& printed) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (true) {
        if (report.text.find('\n') != std::string::npos) return Outcome::reported;
        if (report.text.size() == kMostKept) return Outcome::tooLong;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (left <= 0) return Outcome::late;
        std::array<pollfd, 3> watched{pollfd{report.ended ? -1 : reports.out(), POLLIN, 0},
                                      pollfd{printed.ended ? -1 : prints.out(), POLLIN, 0},
                                      pollfd{child.ending(), POLLIN, 0}};
        if (::poll(watched.data(), watched.size(), static_cast<int>(left)) <= 0) continue;
        if (watched[1].revents != 0) printed.take(prints.out());
        if (watched[0].revents != 0)
            report.take(reports.out());
        else if (watched[2].revents != 0)
            return Outcome::ended; // and nothing more is in the pipe
    }
}

/// What is still in the pipe after the end of the process that wrote into it.
void takeRest(const Pipe& prints, Received& printed) {
    pollfd rest{prints.out(), POLLIN, 0};
    while (!printed.ended && printed.text.size() < kMostShown && ::poll(&rest, 1, 0) > 0)
        printed.take(prints.out());
}

/// How a process ended by itself that gave no report.
std::string howItEnded(int status) {
    if (WIFSIGNALED(status)) return std::string("it crashes: ") + ::strsignal(WTERMSIG(status));
    return "it ends the process, with exit status " + std::to_string(WEXITSTATUS(status));
}

/// The beginning of a text, with a question mark for each byte that is not plain print.
std::string shown(const std::string& printed) {
    std::string text = printed.substr(0, kMostShown);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

Dictionary probeBundle(const std::filesystem::path& bundle, std::chrono::milliseconds limit) {
    Pipe reports;
    Pipe prints;
    std::fflush(nullptr);
    const pid_t id = reports.isOpen() && prints.isOpen() ? ::fork() : -1;
    if (id < 0) return {{"skipped", "it could not be examined: no process for it"}};
    if (id == 0) examineInChild(bundle, reports.in(), prints.in());
    Child child(id);
    reports.closeIn();
    prints.closeIn();

    Received report;
    Received printed;
    const Outcome outcome = receive(child, reports, prints, limit, report, printed);
    const int status = child.end();
    takeRest(prints, printed);

    Dictionary told;
    const Result<Value> read = readJson(report.text);
    if (outcome == Outcome::late)
        told.set("skipped", "it hangs: no answer within " + std::to_string(limit.count()) + " ms");
    else if (outcome == Outcome::tooLong)
        told.set("skipped", "it could not be examined: its answers are too long");
    else if (outcome == Outcome::ended)
        told.set("skipped", howItEnded(status));
    else if (read && read.value().dictionary())
        told = *read.value().dictionary();
    else
        told.set("skipped", "it writes into files that are not its own");
    if (const std::string text = shown(printed.text); !text.empty()) told.set("prints", text);
    return told;
}

} // namespace

Dictionary probePlugin(const std::filesystem::path& entry, std::chrono::milliseconds limit) {
    const std::string name = entry.filename().string();
    Dictionary told{{"entry", platform::isUtf8(name) ? name : shown(name)}};
    const Dictionary found = isPluginPath(entry)
                                 ? probeBundle(entry, limit)
                                 : Dictionary{{"skipped", R"(not a bundle: its extension is not "bundle")"}};
    for (const auto& [key, value] : found)
        told.set(key, value);
    return told;
}

} // namespace lumora
