#pragma once

#include "platform/foundation/RegularFile.h"

#include <string>

namespace platform {

/// What is wrong with a file that should be a shared object for this machine, fit to follow "cannot be loaded: "; empty
/// when nothing is.
///
/// The loader trusts what the headers say. A file that was cut short maps well and then kills the process when its
/// missing pages are touched, and so does one whose tables lie where nothing is mapped. Looked at here is what the
/// loader follows before it runs any code; a file that was written to do harm can do so as code, checked or not.
[[nodiscard]] std::string faultOfSharedObject(const RegularFile& file);

} // namespace platform
