#pragma once

#include "lockscreen/phone/Phone.h"

#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/Value.h"
#include "platform/services/LibraryHandle.h"
#include "platform/services/PictureDecoder.h"

#include <functional>
#include <memory>
#include <string>

namespace lumora {

/// An icon that was asked for. Letting go of it cancels it: unless it is just coming, it does not come then.
using IconOrder = std::shared_ptr<void>;

/// The device whose lock screen is shown: its applications, from the application-list library, and its App Views, as
/// their plug-ins answer in a process of their own. What ends or hangs that process, or is of no use, is left out; none
/// of the plug-ins is loaded into this process.
///
///     Installation::read([](std::shared_ptr<const Installation> read) { … });
///
/// Any thread.
class Installation {
  public:
    /// Starts the main thread, if there is none. `ready` is called there twice: with the applications, and with all of it
    /// once the plug-ins have answered, which takes up to the limits for each that hangs and keeps no thread of others.
    static void read(std::function<void(std::shared_ptr<const Installation>)> ready,
                     const platform::ProbeLimits& limits = {});

    /// All of it, for whoever cannot go on without. Not on the main thread, which does not wait for the plug-ins.
    [[nodiscard]] static std::shared_ptr<const Installation> readNow();

    [[nodiscard]] const Installed& installed() const { return installed_; }
    /// False as long as nothing is known of the App Views.
    [[nodiscard]] bool isWhole() const { return isWhole_; }

    /// Has an application's icon drawn, so many pixels wide and high, up to 1024. `come` is called on the main thread,
    /// once, with a PNG file of that size or a pixel more, which is empty if there is no icon. The picture decoder keeps
    /// those drawn last, so they are not drawn again.
    [[nodiscard]] IconOrder icon(const std::string& identifier, int pixels,
                                 std::function<void(const platform::Data& png)> come) const;

    Installation(std::shared_ptr<void> library, Installed installed, bool isWhole);

  private:
    std::shared_ptr<void> library_; ///< a LibraryHandle; its class is there while this is
    Installed installed_;
    bool isWhole_;
};

} // namespace lumora
