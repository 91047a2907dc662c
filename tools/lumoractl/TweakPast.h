#pragma once

#include "history/Timeline.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <optional>
#include <vector>

namespace lumora {

/// What a tweak tells of its settings beside their values, where it offers that. Each waits for the answer. Any thread.

/// The records that the tweak keeps, from the oldest; nothing where it offers none.
[[nodiscard]] platform::Result<std::optional<std::vector<ChangeRecord>>> fetchHistory();
/// Has the tweak forget its records; false where it offers none.
[[nodiscard]] platform::Result<bool> clearHistory();
/// The default of each setting; nothing where the tweak tells none.
[[nodiscard]] platform::Result<std::optional<platform::Dictionary>> fetchDefaults();

/// The settings, their defaults as far as they are told, and what has changed; nothing where the tweak offers no history.
struct Past {
    Timeline timeline;
    platform::Dictionary defaults;
    bool tellsDefaults;
};
[[nodiscard]] platform::Result<std::optional<Past>> fetchPast();

} // namespace lumora
