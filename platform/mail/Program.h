#pragma once

#include "platform/foundation/Result.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Another program: looked up, and started without a shell.
///
///     if (const auto sendmail = programNamed("sendmail"))
///         runProgram({sendmail->string(), "-i", "--", "a@b.example"}, message, std::chrono::minutes(1));
///
/// Any thread.

/// The executable file of that name: in `$PATH`, or itself when the name has a folder. Nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> programNamed(const std::string& name);

/// Runs a program with a file as its standard input until it ends; what it wrote to its standard error is in the error
/// when it fails. One that takes longer is ended, with its children.
[[nodiscard]] Result<void> runProgram(const std::vector<std::string>& command, const std::filesystem::path& input,
                                      std::chrono::milliseconds atMost);

/// Starts a program that goes on by itself, without waiting for it.
[[nodiscard]] Result<void> startProgram(const std::vector<std::string>& command);

} // namespace platform
