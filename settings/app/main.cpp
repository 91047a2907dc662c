#include "platform/foundation/NSLog.h"
#include "programs/Program.h"
#include "settings/app/Application.h"

#include <malloc.h>

// Nothing throws here but for want of memory, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    platform::setNSLogOnStandardError(options.verbose);
    // What a picture of the window or a thread that reads much has taken is not kept for the next one.
    ::mallopt(M_MMAP_THRESHOLD, 1 << 20);
    ::mallopt(M_ARENA_MAX, 2);
    programs::begin("lumora-settings", options.root);
    if (options.indexBehind) programs::end(settings::printIndex(options));
    programs::end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
