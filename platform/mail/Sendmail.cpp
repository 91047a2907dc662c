#include "platform/mail/Sendmail.h"

#include <cstdlib>

namespace platform {

std::optional<std::filesystem::path> sendmailProgram() {
    if (const char* named = std::getenv("LUMORA_SENDMAIL")) return programNamed(named);
    for (const char* name : {"sendmail", "/usr/sbin/sendmail", "/usr/lib/sendmail"})
        if (auto program = programNamed(name)) return program;
    return std::nullopt;
}

Result<void> sendWith(const std::filesystem::path& program, const std::vector<std::string>& recipients,
                      const std::filesystem::path& message, std::chrono::milliseconds atMost) {
    std::vector<std::string> command{program.string(), "-i", "--"};
    command.insert(command.end(), recipients.begin(), recipients.end());
    return runProgram(command, message, atMost);
}

} // namespace platform
