#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace profiles {

/// A setting that is not the same before and after.
struct Difference {
    std::string key;
    std::optional<platform::Value> before; ///< nothing where it is not set
    std::optional<platform::Value> after;  ///< the same
};

/// Whether two values of a setting mean the same: for a setting of the tweak, 70 is 70.0. Any thread, as all of these.
[[nodiscard]] bool isSame(std::string_view key, const platform::Value& a, const platform::Value& b);

/// What taking a profile changes: of the keys that `named` has, those with another value in `settings`. In the order of
/// `named`.
[[nodiscard]] std::vector<Difference> changesBy(const platform::Dictionary& named,
                                                const platform::Dictionary& settings);

/// All differences of two dictionaries: in the order of the first, then what only the second has.
[[nodiscard]] std::vector<Difference> differences(const platform::Dictionary& before,
                                                  const platform::Dictionary& after);

} // namespace profiles
