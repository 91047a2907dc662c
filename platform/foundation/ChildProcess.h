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

/// How much of the machine a child process may take, counted over its whole life; 0 is no limit.
struct ChildLimits {
    std::chrono::seconds processor{0};
    std::uint64_t memory = 0; ///< of address space, in bytes; sanitizers reserve far more than any, and go without
    std::uint64_t descriptors = 0;
};

/// A program that does what this process must not risk. It is asked on its standard input and answers on its standard
/// output:
///
///     auto child = ChildProcess::start({helperProgram("lumora-probe").string()}, {.memory = 1 << 30}).value();
///     const auto patience = child->patience(10s, 2s);
///     std::string answer;
///     if (child->send("7\n", patience))
///         while (child->receive(answer, 4096, patience) == ChildProcess::Heard::something) …
///
/// It has a process group of its own, no core, and of this process's descriptors none. It dies with the thread that
/// started it. When this object goes, it is gone, with all that it started and left in its group; what made itself a
/// session of its own lives on, so nothing here waits for the end of a pipe. One thread at a time.
class PLATFORM_EXPORT ChildProcess {
  public:
    /// How long the child may take over one question: by the clock, and of its processor time.
    struct Patience {
        std::chrono::steady_clock::time_point until;
        std::chrono::nanoseconds processor;
    };
    enum class Heard : unsigned char {
        something,
        enough,    ///< as much as the caller takes has come before
        end,       ///< the child has ended or has closed its output, and all that it said was heard
        tooLate,   ///< by the clock
        tooCostly, ///< of processor time
    };

    /// The command is the program's file, then its arguments.
    [[nodiscard]] static Result<std::unique_ptr<ChildProcess>> start(const std::vector<std::string>& command,
                                                                     const ChildLimits& limits);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Patience from now on.
    [[nodiscard]] Patience patience(std::chrono::nanoseconds byTheClock, std::chrono::nanoseconds processor) const;

    /// Hands all of the bytes over; false when the child ends, closes its input or takes too long. Raises no signal.
    [[nodiscard]] bool send(std::string_view bytes, const Patience& patience);
    /// Waits for the next bytes and appends them, until `most` are there. What the child prints to its standard error
    /// meanwhile is taken as well.
    [[nodiscard]] Heard receive(std::string& into, std::size_t most, const Patience& patience);

    /// Waits for the end of the child alone: `end`, or that it takes too long. It is not taken note of before end().
    [[nodiscard]] Heard awaitEnd(const Patience& patience);

    /// The beginning of what the child has printed to its standard error; after end() all that is kept of it.
    [[nodiscard]] const std::string& printed() const { return printed_; }
    /// Of the child alone, without those that it started.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const;
    [[nodiscard]] pid_t id() const { return id_; }

    /// Ends the child and its group; how it ended, as waitpid() says it. The same answer ever after.
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
