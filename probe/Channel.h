#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <cstddef>
#include <string>

namespace lumora {

/// Descriptors below this number are traps for plug-ins; the probe's own are above.
inline constexpr int kLowDescriptors = 256;

/// The same file under a number above the low ones if there is room, the old number closed.
platform::FileDescriptor moveUp(platform::FileDescriptor descriptor);

/// Tells the parent process what the probe finds. Takes the standard output for itself and puts the standard error in
/// its place, so that what plug-ins print is no answer.
class Channel {
  public:
    /// Every answer begins with the token, by which the parent recognises it.
    explicit Channel(std::string token);

    /// Ends the process if the parent is gone, or if the process is a copy that a plug-in has made.
    void say(std::size_t index, char answer, const std::string& text) const;

  private:
    std::string token_;
    platform::FileDescriptor out_;
    int process_;
};

} // namespace lumora
