#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/Look.h"

#include "platform/foundation/Value.h"

#include <optional>
#include <set>
#include <string>

namespace lumora {

/// Turns the face to what is edited: after a change it goes to the surface on which that shows, unless a person is at
/// the face or was a moment ago. What has changed meanwhile is gathered, so that a dragged slider turns the face once.
///
///     turning.changed(before, keys, now);
///     if (now >= turning.due()) { const Changed changed = turning.take(); … }
///
/// One thread.
class Turning {
  public:
    /// What has changed since the last time, and the settings from before.
    struct Changed {
        platform::Dictionary before;
        std::set<std::string> keys;
    };

    void setFollows(bool does);
    [[nodiscard]] bool follows() const { return follows_; }
    /// Keys have changed; `before` are the settings without the change.
    void changed(const platform::Dictionary& before, const std::set<std::string>& keys, Seconds now);
    /// A person has touched the face.
    void touched(Seconds now) { touched_ = now; }
    /// When the face is to turn; nothing while nothing has changed.
    [[nodiscard]] std::optional<Seconds> due() const;
    [[nodiscard]] Changed take();

    /// After the last change.
    static constexpr Seconds kRest = 0.15;
    /// So long a person is not moved.
    static constexpr Seconds kLeftAlone = 10;

  private:
    bool follows_ = true;
    std::optional<Changed> changed_;
    Seconds since_ = 0;
    std::optional<Seconds> touched_;
};

/// Where a change of these keys is to be seen: the surface that the state is at if it shows there, or else that of the
/// first key that has one. Nothing for keys of plug-ins. Any thread.
[[nodiscard]] std::optional<Surface> surfaceOf(const Turning::Changed& changed, const platform::Dictionary& settings,
                                               const Device& device, const State& state);

} // namespace lumora
