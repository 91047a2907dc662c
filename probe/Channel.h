#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <cstddef>
#include <string>

namespace lumora {

/// Descriptors below this number are traps for plug-ins; the probe's own are above.
inline constexpr int kLowDescriptors = 256;

/// Moves a descriptor to a number above the low ones, if there is room.
platform::FileDescriptor moveUp(platform::FileDescriptor descriptor);

/// Tells the parent process what the probe finds. Takes the standard output for itself and puts the standard error in
/// its place, so that nothing that plug-ins print is an answer. One thread.
class Channel {
  public:
    /// Every answer begins with the token, by which the parent recognises it.
    explicit Channel(std::string token);

    /// Writes an answer. Ends the process if the parent is gone, or if a plug-in has made this process as a copy.
    void say(std::size_t index, char answer, const std::string& text) const;

  private:
    std::string token_;
    platform::FileDescriptor out_;
    int process_;
};

} // namespace lumora
