#include "lockscreen/app/Playing.h"

#include <string>

using platform::Result;

namespace lumora {

Result<void> goTo(Behaviour& behaviour, Surface surface, Seconds now) {
    behaviour.show(surface, now);
    if (behaviour.state().surface == surface) return {};
    return Result<void>::failure(std::string("with these settings, no way leads to surface ") +
                                 static_cast<char>(surface));
}

Result<Seconds> play(Behaviour& behaviour, const Options& options, const Inputs& inputs) {
    Seconds now = behaviour.state().now;
    if (options.surface)
        if (const Result<void> there = goTo(behaviour, *options.surface, now); !there)
            return Result<Seconds>::failure(there.error());
    for (const Gesture& gesture : inputs.gestures) {
        if (gesture.kind == Gesture::Kind::wait) now += gesture.amount;
        behaviour.apply(gesture, now);
    }
    if (options.idle > 0) behaviour.apply({Gesture::Kind::wait, {}, options.idle}, now += options.idle);
    return now;
}

} // namespace lumora
