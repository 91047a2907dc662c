#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "tests/support/Deadline.h"

#include <csignal>
#include <cstdio>
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
        platform::Pipe in;
        platform::Pipe out;
        if (!in || !out) throw std::runtime_error("no pipe");
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (auto& word : command)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        id_ = ::fork();
        if (id_ == 0) {
            ::dup2(in.reading.number(), STDIN_FILENO);
            ::dup2(out.writing.number(), STDOUT_FILENO);
            ::execv(arguments.front(), arguments.data());
            ::_exit(127);
        }
        input_ = ::fdopen(in.writing.release(), "w");
        output_ = ::fdopen(out.reading.release(), "r");
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
