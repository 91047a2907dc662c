#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace profiles {

/// What a person is told of a file that is read all the same.
struct Remark {
    enum class Kind : unsigned char {
        later,   ///< a later version has made it
        entry,   ///< something beside the settings is not understood
        secret,  ///< a passcode, which is left out
        unknown, ///< no setting of Lumora has the key; it is left out
        refused, ///< the setting cannot have the value; it is left out
        beyond,  ///< a number that no page sets; it is taken, and drawn clamped
        absent,  ///< what the value names is not installed; it is taken
    };
    Kind kind;
    std::string key;      ///< empty where it is about the file
    std::size_t line = 0; ///< from 1; 0 where it is about the file
    std::string text;     ///< names the key, and never repeats a secret
};

/// "secret", "unknown" and so on. Any thread, as all of these.
[[nodiscard]] const char* nameOf(Remark::Kind kind);

/// True for what has a setting left out.
[[nodiscard]] bool leavesOut(Remark::Kind kind);

/// The remarks as lines for a person: "line 4: kAppIconSize takes a finite number, not a text", and last, on one line,
/// "2 passcodes were left out: …".
[[nodiscard]] std::vector<std::string> linesOf(const std::vector<Remark>& remarks);

} // namespace profiles
