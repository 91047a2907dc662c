#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

namespace lumora {

/// Takes one line of the log, without a line break. Any thread may call it.
using Log = std::function<void(const std::string& line)>;

/// Writes lines to standard error without ever waiting for whoever reads them there: one for which there is no room is
/// left out, and the next that finds room stands behind the number of those that are missing. Any thread.
class ErrorLog {
  public:
    void write(const std::string& line);

  private:
    std::mutex writing_;
    std::size_t missing_ = 0;
};

/// Writes all of a text to a file, or as much as there is room for. False when something is missing.
bool writeAtOnce(int file, std::string_view text);

/// A text from another process as the log shows it: in quotes, on one line, and cut after 80 bytes. Any thread.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace lumora
