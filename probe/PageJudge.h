#pragma once

#include "platform/foundation/Class.h"
#include "platform/foundation/Value.h"

#include <string>

namespace lumora {

/// Makes a plug-in's settings page, with those behind it, twice, and judges the rows:
///
///     {"findings": [{"check": …, "what": …}, …], "keys": [the preference keys of all rows]}
///
/// Throws what a page throws. Main thread.
[[nodiscard]] platform::Dictionary judgePages(platform::Class firstPage, const std::string& title);

/// Makes the pages once and asks each row for its value. Throws what a page throws. Main thread.
void makePages(platform::Class firstPage, const std::string& title);

} // namespace lumora
