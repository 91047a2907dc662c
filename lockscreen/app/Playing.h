#pragma once

#include "lockscreen/Behaviour.h"
#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"

#include "platform/foundation/Result.h"

namespace lumora {

/// Takes a behaviour at its beginning to the surface that is asked for, through the gestures and the time without a
/// touch, without waiting for any of it. Fails if the settings leave no way to the surface. Returns the time then.
[[nodiscard]] platform::Result<Seconds> play(Behaviour& behaviour, const Options& options, const Inputs& inputs);

/// Goes to a surface as if by hand; to the home screen by way of the passcode.
[[nodiscard]] platform::Result<void> goTo(Behaviour& behaviour, Surface surface, Seconds now);

} // namespace lumora
