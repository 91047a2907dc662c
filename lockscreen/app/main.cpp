#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"
#include "lockscreen/app/PrintState.h"
#include "lockscreen/app/ShowWindow.h"

#include "programs/CommandLine.h"
#include "programs/Program.h"

// Nothing throws here but for want of memory, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const lumora::Options options = lumora::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    programs::begin("lumora-lockscreen", options.root);
    const auto inputs = lumora::readInputs(options);
    if (!inputs) {
        programs::complain(inputs.error());
        programs::end(programs::kWrongUse);
    }
    for (const std::string& remark : inputs.value().remarks)
        programs::complain(remark);
    programs::end(options.state ? lumora::printState(argc, argv, options, inputs.value())
                                : lumora::showWindow(argc, argv, options, inputs.value()));
}
