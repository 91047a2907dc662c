#pragma once

#include <string>

namespace lumora {

/// Fills the low descriptors, where a program has what it was made with: its display, its ports, its files. Here all of
/// them lead into one pipe that nobody else knows of, so that a plug-in which writes to files that are not its own, or
/// closes them, gives itself away.
class Traps {
  public:
    /// The process's own descriptors must be above by now.
    Traps();
    Traps(const Traps&) = delete;
    Traps& operator=(const Traps&) = delete;
    ~Traps() = default; ///< the process ends with them

    /// What has been done to them so far; empty while they are as they were.
    [[nodiscard]] std::string sprung() const;

  private:
    int bottom_ = -1; ///< the end of the pipe that can be read
};

} // namespace lumora
