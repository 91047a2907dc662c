#pragma once

#include "platform/foundation/Result.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Finds other programs, and starts them without a shell.
///
///     if (const auto sendmail = programNamed("sendmail"))
///         runProgram({sendmail->string(), "-i", "--", "a@b.example"}, message, std::chrono::minutes(1));
///
/// Any thread.

/// The executable file of that name, in `$PATH` unless the name has a folder. Nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> programNamed(const std::string& name);

/// Runs a program with a file as its standard input until the program ends. Fails, with what the program has written to
/// its standard error, unless it ends with 0. After `atMost`, ends the program and its children, and fails.
[[nodiscard]] Result<void> runProgram(const std::vector<std::string>& command, const std::filesystem::path& input,
                                      std::chrono::milliseconds atMost);

/// Starts a program and does not wait for it. Fails when it does not start.
[[nodiscard]] Result<void> startProgram(const std::vector<std::string>& command);

} // namespace platform
