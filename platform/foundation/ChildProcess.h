#pragma once

#include "platform/Export.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace platform {

/// How much of the machine a child process may take over its whole life; 0 is no limit.
struct ChildLimits {
    std::chrono::seconds processor{0};
    std::uint64_t memory = 0; ///< address space in bytes; no limit under sanitizers, which reserve far more
    std::uint64_t descriptors = 0;
};

/// A program that does what this process must not risk. It reads questions from its standard input and writes answers
/// to its standard output:
///
///     auto child = ChildProcess::start({helperProgram("lumora-probe").string()}, {.memory = 1 << 30}).value();
///     const auto patience = child->patience(10s, 2s);
///     std::string answer;
///     if (child->send("7\n", patience))
///         while (child->receive(answer, 4096, patience) == ChildProcess::Heard::something) …
///
/// The child has a process group of its own, leaves no core file, and inherits no other descriptors. It dies with the
/// thread that started it. Destroying this object ends the child and its group; a process that has left the group lives
/// on, so nothing here waits for the end of a pipe. One thread at a time.
class PLATFORM_EXPORT ChildProcess {
  public:
    /// How long the child may take over one question, by the clock and in processor time.
    struct Patience {
        std::chrono::steady_clock::time_point until;
        std::chrono::nanoseconds processor;
        int stop = -1; ///< a file; once it can be read, it is too late by the clock
    };
    enum class Heard : unsigned char {
        something,
        enough,    ///< the caller already has as much as it takes
        end,       ///< the child has ended or closed its output, and everything it said has been heard
        tooLate,   ///< by the clock
        tooCostly, ///< in processor time
    };

    /// The command is the program's file, then its arguments.
    [[nodiscard]] static Result<std::unique_ptr<ChildProcess>> start(const std::vector<std::string>& command,
                                                                     const ChildLimits& limits);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Patience from now on.
    [[nodiscard]] Patience patience(std::chrono::nanoseconds byTheClock, std::chrono::nanoseconds processor,
                                    int stop = -1) const;

    /// Hands over all of the bytes; false when the child ends, closes its input or takes too long. Raises no signal.
    [[nodiscard]] bool send(std::string_view bytes, const Patience& patience);
    /// Waits for the next bytes and appends them, up to `most` in all. Meanwhile collects what the child prints to its
    /// standard error.
    [[nodiscard]] Heard receive(std::string& into, std::size_t most, const Patience& patience);

    /// Waits for nothing but the end of the child: `end`, `tooLate` or `tooCostly`. end() still has to be called.
    [[nodiscard]] Heard awaitEnd(const Patience& patience);

    /// The beginning of what the child has printed to its standard error; complete after end().
    [[nodiscard]] const std::string& printed() const { return printed_; }
    /// Of the child alone, without the processes that it has started.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const;
    [[nodiscard]] pid_t id() const { return id_; }

    /// Ends the child and its group. The status of waitpid(), each time.
    int end();

  private:
    ChildProcess() = default;
    [[nodiscard]] Heard wait(int file, short events, const Patience& patience);
    void takePrints();

    pid_t id_ = -1;
    clockid_t clock_{}; ///< of its processor time
    int status_ = 0;
    FileDescriptor ending_; ///< becomes readable when the process has ended
    FileDescriptor input_;
    FileDescriptor output_;
    FileDescriptor prints_;
    std::string printed_;
};

} // namespace platform
