#pragma once

#include "tools/lumoractl/Streams.h"

#include <string>

namespace lumora {

/// How the program ends.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1,
    kWrongUse = 2,
    kNotOffered = 3, ///< the tweak is without a message that this needs
    kPartly = 3,     ///< done, but for something that was left out and told of
};

/// Says what is wrong, and gives the code.
inline int report(const std::string& error, ExitCode code = kFailed) {
    complain(error);
    return code;
}

/// Writes a text to standard output, or says why not.
inline int print(const std::string& text) {
    const auto written = writeAll("-", text.data(), text.size());
    return written ? kDone : report(written.error());
}

} // namespace lumora
