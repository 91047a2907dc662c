#pragma once

#include "platform/foundation/RegularFile.h"

#include <string>

namespace platform {

/// What is wrong with a file that should be a shared object for this machine, fit to follow "cannot be loaded: "; empty
/// when nothing is.
///
/// The loader trusts what the headers say. A file that was cut short maps well and then kills the process when its
/// missing pages are touched, and so does one whose tables lie where nothing is mapped. Checked is all that the loader
/// follows until the code runs: segments and their flags, protection, the dynamic section, texts, symbols and their
/// hash tables, relocations, versions, the functions to begin and end with; sections too, if there are any, since they
/// say where code and data ought to be. Not checked are the code, the data, what symbols stand for, what unwinding
/// follows, and the libraries that it needs. A file that was written to do harm can do so as code, checked or not.
[[nodiscard]] std::string faultOfSharedObject(const RegularFile& file);

} // namespace platform
