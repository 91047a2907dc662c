#include "lockscreen/app/ShowWindow.h"

#include "programs/Program.h"

namespace lumora {

int showWindow(int /*argc*/, char** /*argv*/, const Options& /*options*/, const Inputs& /*inputs*/) {
    return programs::complain("there is no window yet; --state prints what it would show");
}

} // namespace lumora
