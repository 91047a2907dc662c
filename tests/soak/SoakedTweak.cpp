#include "tests/soak/SoakedTweak.h"

#include "platform/foundation/FileDescriptor.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tests {

SoakedTweak::SoakedTweak(const std::filesystem::path& program, const std::filesystem::path& settings) {
    platform::Pipe output;
    if (!output) throw std::runtime_error("no pipe");
    const pid_t parent = ::getpid();
    id_ = ::fork();
    if (id_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(1);
        ::dup2(output.writing.number(), STDOUT_FILENO);
        ::dup2(output.writing.number(), STDERR_FILENO);
        ::execl(program.c_str(), program.c_str(), "--verbose", "--settings", settings.c_str(), nullptr);
        ::_exit(127);
    }
    reader_ = std::thread([this, lines = ::fdopen(output.reading.release(), "r")] { read(lines); });
}

SoakedTweak::~SoakedTweak() {
    if (id_ > 0) {
        ::kill(id_, SIGKILL);
        ::waitpid(id_, nullptr, 0);
    }
    reader_.join(); // its pipe has ended with the tweak
}

void SoakedTweak::read(std::FILE* lines) {
    char* line = nullptr;
    std::size_t capacity = 0;
    for (ssize_t length = 0; (length = ::getline(&line, &capacity, lines)) > 0;) {
        const std::string_view text(line, static_cast<std::size_t>(length));
        if (text.starts_with("lumora-tweak: updateSettings: ")) {
            ++changes_;
        } else if (text.starts_with("lumora-tweak ready")) {
            ready_ = true;
        } else if (!text.starts_with("lumora-tweak: requestTweakSettings: ")) {
            std::fwrite(text.data(), 1, text.size(), stderr); // it complains
        }
    }
    std::free(line);
    std::fclose(lines);
}

} // namespace tests
