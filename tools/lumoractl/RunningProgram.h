#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace lumora {

/// A program of ours that runs beside this one, on the same terminal, and ends with this object: by SIGTERM, and where
/// that takes too long by SIGKILL. The terminal's own signals do not reach it. It ends, too, when this process does.
/// One thread, that which has started it.
class RunningProgram {
  public:
    RunningProgram() = default; ///< none
    RunningProgram(RunningProgram&&) noexcept = default;
    RunningProgram& operator=(RunningProgram&& other) noexcept;
    ~RunningProgram() { end(); }

    /// The file, then its arguments. Its standard output goes to where that of this process goes, or into a pipe.
    [[nodiscard]] static platform::Result<RunningProgram> start(const std::vector<std::string>& command, bool piped);

    /// Its exit status, or minus the signal that has ended it; nothing while it runs.
    [[nodiscard]] std::optional<int> status();
    /// The first line of what it writes into its pipe; empty where that does not come in time.
    [[nodiscard]] std::string firstLine(std::chrono::seconds within) const;
    void end();

  private:
    struct Id {
        pid_t number = -1;
        Id() = default;
        explicit Id(pid_t started) : number(started) {}
        Id(Id&& other) noexcept : number(std::exchange(other.number, -1)) {}
        Id& operator=(Id&& other) noexcept {
            number = std::exchange(other.number, -1);
            return *this;
        }
    };

    Id id_;
    platform::FileDescriptor output_;
};

} // namespace lumora
