#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "tests/support/Deadline.h"
#include "tests/tweak/Sandbox.h"

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tests {

/// A program that was started and whose output is kept: standard output comes line by line while it runs, standard
/// error when it has ended.
class Program {
  public:
    explicit Program(std::vector<std::string> command, const std::string& input = {}) : name_(command.front()) {
        std::fputs(input.c_str(), in_.get());
        std::fflush(in_.get());
        ::lseek(fileno(in_.get()), 0, SEEK_SET);
        platform::Pipe output;
        if (!output) throw std::runtime_error("no pipe");
        std::vector<char*> words;
        words.reserve(command.size() + 1);
        for (std::string& word : command)
            words.push_back(word.data());
        words.push_back(nullptr);
        id_ = fork();
        if (id_ == 0) {
            dup2(fileno(in_.get()), STDIN_FILENO);
            dup2(output.writing.number(), STDOUT_FILENO);
            dup2(fileno(err_.get()), STDERR_FILENO);
            execvp(words.front(), words.data());
            _exit(127);
        }
        out_.reset(fdopen(output.reading.release(), "r"));
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { kill(); }

    /// The next line of standard output without its end; empty when there is no more.
    [[nodiscard]] std::string readLine() {
        const Deadline deadline("a line of " + name_);
        std::string line;
        for (int c = std::fgetc(out_.get()); c != EOF && c != '\n'; c = std::fgetc(out_.get()))
            line += static_cast<char>(c);
        return line;
    }
    /// Whether there is something on standard output, of which nothing has been read yet.
    [[nodiscard]] bool hasOutput() const {
        pollfd output{fileno(out_.get()), POLLIN, 0};
        return ::poll(&output, 1, 0) == 1;
    }
    /// Everything that is still to come on standard output, up to its end.
    [[nodiscard]] std::string readRest() {
        const Deadline deadline("all that " + name_ + " prints");
        std::string rest;
        for (int c = std::fgetc(out_.get()); c != EOF; c = std::fgetc(out_.get()))
            rest += static_cast<char>(c);
        return rest;
    }

    /// How many it has now.
    [[nodiscard]] std::ptrdiff_t threads() const { return entries(("/proc/" + std::to_string(id_) + "/task").c_str()); }

    void signal(int number) const {
        if (id_ > 0) ::kill(id_, number);
    }
    /// Waits for the end: the exit status, or the negated signal that ended it.
    int wait() {
        const Deadline deadline("the end of " + name_);
        int status = 0;
        if (id_ <= 0 || waitpid(std::exchange(id_, -1), &status, 0) < 0) return -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    void kill() {
        signal(SIGKILL);
        wait();
    }
    /// What stands on standard error by now. Opened anew, since the program writes on from wherever this process has
    /// read to.
    [[nodiscard]] std::string errors() const { return readFile("/proc/self/fd/" + std::to_string(fileno(err_.get()))); }

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    /// Not inherited by accident: each program gets only its own three streams.
    static File temporary() {
        File file(std::tmpfile());
        if (!file) throw std::runtime_error("no temporary file");
        fcntl(fileno(file.get()), F_SETFD, FD_CLOEXEC);
        return file;
    }

    std::string name_;
    File in_ = temporary();
    File err_ = temporary();
    File out_;
    pid_t id_ = -1;
};

/// The tweak, once it is ready. Throws with what it said instead when it does not get there.
class RunningTweak : public Program {
  public:
    explicit RunningTweak(std::vector<std::string> command) : Program(std::move(command)) {
        if (!readLine().starts_with("lumora-tweak ready")) throw std::runtime_error("no tweak: " + errors());
    }
};

/// What a program that ran to its end left behind.
struct Finished {
    int status = 0;
    std::string output;
    std::string errors;
};

inline Finished run(std::vector<std::string> command, const std::string& input = {}) {
    Program program(std::move(command), input);
    std::string output = program.readRest();
    const int status = program.wait();
    return {status, std::move(output), program.errors()};
}

} // namespace tests
