#include "tests/soak/Census.h"

#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>

namespace tests {

namespace fs = std::filesystem;

namespace {

long entriesIn(const fs::path& folder) {
    std::error_code gone;
    long count = 0;
    for (auto entry = fs::directory_iterator(folder, gone); !gone && entry != fs::directory_iterator();
         entry.increment(gone))
        ++count;
    return count;
}

/// In kB, as the system tells it in /proc/PID/status.
long residentIn(const fs::path& status) {
    std::ifstream lines(status);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
    return 0;
}

} // namespace

Census Census::of(pid_t process) {
    const fs::path folder = "/proc/" + std::to_string(process);
    Census census;
    census.held = {entriesIn(folder / "fd"), entriesIn(folder / "task"), residentIn(folder / "status"), 0};
    return census;
}

Census Census::ofSelf() {
    Census census = of(::getpid());
    --census.held[descriptors]; // the one that counts the others
    const auto heap = ::mallinfo2();
    census.held[heapKb] = static_cast<long>((heap.uordblks + heap.hblkhd) / 1024);
    return census;
}

} // namespace tests
