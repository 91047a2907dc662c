#pragma once

#include "tests/support/Deadline.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tests {

/// Another program, spoken to in lines over its standard input and output. Ends with its input, at the latest when
/// this object goes.
class Process {
  public:
    explicit Process(std::vector<std::string> command) : name_(command.front()) {
        int in[2];
        int out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (auto& word : command)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        id_ = ::fork();
        if (id_ == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            ::execv(arguments.front(), arguments.data());
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        input_ = ::fdopen(in[1], "w");
        output_ = ::fdopen(out[0], "r");
    }
    ~Process() {
        if (input_ != nullptr) std::fclose(input_);
        std::fclose(output_);
        wait();
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void write(const std::string& line) const {
        std::fputs((line + "\n").c_str(), input_);
        std::fflush(input_);
    }
    /// Without its end; empty when the program has ended.
    [[nodiscard]] std::string read() const {
        const Deadline deadline("a line of " + name_);
        std::string line;
        for (int c = std::fgetc(output_); c != EOF && c != '\n'; c = std::fgetc(output_))
            line += static_cast<char>(c);
        return line;
    }
    void kill() {
        ::kill(id_, SIGKILL);
        wait();
    }

  private:
    void wait() {
        const Deadline deadline("the end of " + name_);
        if (id_ > 0) ::waitpid(std::exchange(id_, -1), nullptr, 0);
    }

    std::string name_;
    pid_t id_ = -1;
    FILE* input_ = nullptr;
    FILE* output_ = nullptr;
};

} // namespace tests
