#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "search/PrivateFolder.h"

namespace settings {

/// A tweak that only this process and its forks hear of, in a ports folder of their own. So pages open as ever, and the
/// tweak of the user hears of none of them.
class PrivateTweak {
  public:
    /// Makes the ports folder. To be called before anything else asks for it, and before there are threads.
    platform::Result<void> makeFolder();
    /// Begins to answer each request with these settings, on a thread of its own, until the process ends. Of several
    /// processes with one folder, one at a time.
    platform::Result<void> answer(const platform::Dictionary& settings);
    /// At the end of the process that has made it.
    void removeFolder() { folder_.remove(); }

  private:
    search::PrivateFolder folder_;
};

} // namespace settings
