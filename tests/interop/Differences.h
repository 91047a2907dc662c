#pragma once

#include "platform/foundation/Value.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace tests {

/// What becomes of values on the way to or from another implementation, by its nature. There are these and no others;
/// docs/interoperability.md gives the reasons, and a test sees to it that each still exists.
struct Difference {
    enum class Effect {
        changes,  ///< what arrives is the normalised value
        excludes, ///< the value does not arrive, or damaged in no simple way, so the normalised value is sent instead
        reorders  ///< what arrives has the same normalised value
    };

    std::string peer;
    std::string way; ///< its arguments: "read", "write", or "write" and a style
    std::string name;
    Effect effect;
    platform::Value (*normalised)(const platform::Value&);
    platform::Value witness; ///< a value that does not arrive as it is
};

[[nodiscard]] const std::vector<Difference>& differences();

/// A value with the normalisations of a peer that have the given effect. Those of "write" are those of its styles, too.
[[nodiscard]] platform::Value normalised(const platform::Value& value, const std::string& peer, const std::string& way,
                                         Difference::Effect effect);

/// For the names of tests.
void PrintTo(const Difference& difference, std::ostream* stream);

} // namespace tests
