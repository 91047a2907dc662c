#include "platform/foundation/NSLog.h"
#include "programs/Program.h"
#include "settings/app/Application.h"

// Nothing throws here but for want of memory, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    platform::setNSLogOnStandardError(options.verbose);
    programs::begin("lumora-settings", options.root);
    if (options.indexBehind) programs::end(settings::printIndex(options));
    programs::end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
