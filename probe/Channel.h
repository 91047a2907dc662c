#pragma once

#include <cstddef>
#include <string>

namespace lumora {

/// Below this, all descriptors are a plug-in's to stumble over; above is what the probe needs itself.
inline constexpr int kLowDescriptors = 256;

/// The same file under a number above the low ones if there is room, the old number closed.
int moveUp(int descriptor);

/// What the probe tells whoever started it. Takes the standard output for itself, and leaves plug-ins the standard
/// error in its place, so that what they print is no answer.
class Channel {
  public:
    /// Every answer begins with the token, by which the other end knows it.
    explicit Channel(std::string token);

    /// Ends the process when nobody listens, or when it is a copy that a plug-in has made.
    void say(std::size_t index, char verdict, const std::string& text) const;

  private:
    std::string token_;
    int out_;
    int process_;
};

} // namespace lumora
