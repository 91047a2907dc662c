#pragma once

#include "platform/foundation/Result.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// A moment by the system's clock, to the millisecond.
using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

/// "2026-11-20T18:36:00.123Z", for years of four digits. Any thread.
[[nodiscard]] std::string timestampOf(Moment moment);
/// What such a text stands for; the milliseconds may be missing. Nothing for any other text. Any thread.
[[nodiscard]] std::optional<Moment> momentOf(std::string_view timestamp);

/// "2026-11-20 18:36:00", in the time zone of the user.
[[nodiscard]] std::string localTimeOf(Moment moment);

/// A moment as people write it, not in the future unless it has a date:
///
///     now, 90s, 2h ago, 1h30m, 3 days ago, a week ago       so long before now
///     18:36, 18:36:05                                       when it was that time last
///     today, yesterday, yesterday 18:36                     a day without a time is its beginning
///     2026-11-20, 2026-11-20 18:36, 2026-11-20T18:36:05Z    Z or +01:00 stands for a time zone, else it is the user's
///
/// Case does not count. Fails for anything else, and says what is understood.
[[nodiscard]] platform::Result<Moment> readMoment(std::string_view text, Moment now);

} // namespace lumora
