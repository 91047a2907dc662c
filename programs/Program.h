#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace programs {

/// What a program with a window does once its command line is read: takes the folder that stands for the device's "/",
/// says on standard error if the tweak's ports cannot be used, and sees to signals and to strangers' calls of exit().
/// Called once, in the first thread; `name` is a literal.
void begin(const char* name, const std::optional<std::filesystem::path>& root);

/// Says on standard error what the program that has begun cannot do, and returns the exit code of failure. Any thread.
int complain(const std::string& why);

/// Ends the process without joining a thread that may be blocked in strangers' code for good, and so without the
/// destructors of what that thread may be using. Any thread.
[[noreturn]] void end(int exitCode);

} // namespace programs
