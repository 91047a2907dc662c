#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "probe/Traps.h"

#include <filesystem>

namespace lumora {

/// Judges a plug-in that can be used, for its author: each matter in copies of this process, so that the plug-in is not
/// loaded into this one. Finds what discovery takes and does not see, in the order in which it was found:
///
///     {"findings": [{"check": "slider", "what": "My View, row 5 (\"com.example.bright\"): from 1 to 0"}, …],
///      "keys": ["com.example.bright", …], "page": "MyPage"}
///
/// The checks are those that `lumoractl plugin check` knows; the keys are those of all rows. Of a plug-in without a page
/// that can be made, the latter two are missing. Fails where there is no process or folder to try it in. This process has
/// one thread.
[[nodiscard]] platform::Result<platform::Dictionary> judge(const std::filesystem::path& bundle, const Traps& traps);

} // namespace lumora
