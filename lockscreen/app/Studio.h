#pragma once

#include "lockscreen/Look.h"
#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"
#include "lockscreen/phone/Installation.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <QImage>
#include <QQmlEngine>

#include <memory>

namespace lumora {

/// A picture of the screen, and the look that it shows.
struct Taken {
    QImage picture;
    Look look;
};

/// Takes pictures of the screen alone, at a time that stands still. GUI thread.
class Studio {
  public:
    /// Reads what is installed.
    Studio();

    /// The screen where the gestures lead, once it has all of its icons.
    [[nodiscard]] platform::Result<Taken> take(const Options& options, const Inputs& inputs,
                                               const platform::Dictionary& settings);

  private:
    std::shared_ptr<const Installation> installation_;
    QQmlEngine engine_;
};

} // namespace lumora
