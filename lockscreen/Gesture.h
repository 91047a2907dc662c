#pragma once

#include "platform/foundation/Result.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// What a person does, and the passing of time: a word, what it is done to, and how far or how long.
///
///     tap icons[2]      hold icons[0]      tap keys[4]      tap passcode.cancel      tap            (beside every part)
///     swipe left|right|down                swipe notices.items[0] 0.4                (by that share of its width)
///     slide             pull camera|topGrabber|bottomGrabber
///     key Left|Right|Up|Down|Enter|Shift+Enter|Menu|Escape|BackSpace|Home|S|0…9     home
///     wait 3.5          (seconds)
struct Gesture {
    enum class Kind : unsigned char { tap, hold, swipe, slide, pull, key, home, wait };

    Kind kind = Kind::wait;
    std::string target; ///< a part of Look, a direction, or a key; empty beside every part
    double amount = 0;

    /// Reads a line as above. Why it cannot be read is told without its words, which may be digits of a passcode.
    [[nodiscard]] static platform::Result<Gesture> read(std::string_view line);
    [[nodiscard]] std::string line() const;
};

/// The place in a list that a path names: 2 of "icons[2]", for the list "icons".
[[nodiscard]] std::optional<std::size_t> placeIn(std::string_view path, std::string_view list);

} // namespace lumora
