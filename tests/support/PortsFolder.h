#pragma once

#include "tests/support/KeptEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace tests {

/// A ports folder of its own for one test: fresh, private, in the environment, and gone when the test ends.
class PortsFolder {
  public:
    PortsFolder() { ::setenv("LUMORA_PORTS", path().c_str(), 1); }

    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
    /// Where the socket of a port is.
    [[nodiscard]] std::filesystem::path socket(const std::string& port) const { return path() / port; }

  private:
    TemporaryFolder folder_{"ports"};
    KeptEnvironment environment_;
};

} // namespace tests
