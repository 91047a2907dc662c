#pragma once

#include "platform/foundation/Result.h"
#include "settings/host/Navigation.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

namespace settings {

/// Height of the navigation bar, in points; a page has the rest of the window.
inline constexpr int kBarHeight = 52;

/// The size of a page in a window of that size, in points.
[[nodiscard]] constexpr platform::CGSize contentSizeOf(platform::CGSize window) {
    return {window.width, window.height > kBarHeight ? window.height - kBarHeight : 0};
}

/// What the main thread opens first.
struct Launch {
    std::filesystem::path bundle; ///< the folder of the settings bundle
    /// A page class, or a way from the first page, as "/AppsController/AutoUnlockController"; empty for the first page.
    std::string page;
    platform::CGSize contentSize; ///< in points, of what is under the navigation bar
    bool byWay = false;           ///< a class opens with the pages below it that lead there, where links do
};

/// Whether the main thread is waiting for the tweak's answer. Any thread.
[[nodiscard]] bool waitsForTweak();

/// What keeps the main thread waiting, worded to follow "timed out waiting for": the tweak's answer, or the trial of a
/// plug-in or of the application-list library. Empty for neither. Any thread.
[[nodiscard]] std::string whatBlocks();
/// The same, or else that page itself.
[[nodiscard]] std::string whatBlocks(const std::string& page);

/// Starts the permanent main thread, which alone calls into the bundle, and hands it work.
///
///     auto& host = *new Host(show);   // never destroyed: the main thread may be blocked in it for good
///     host.launch({.bundle = platform::standardBundle()}, done);
///     host.post([](Navigation& navigation) { navigation.back(7); });
///
/// One per process. `launch` and `post` may be called from any thread and return at once; what they are given, and
/// `show`, runs on the main thread in the order of the calls.
class Host {
  public:
    explicit Host(Navigation::Show show);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Loads the bundle and opens its page. `done` is told once the page stands, or why there is none. It is not called
    /// at all if making the page blocks for good.
    void launch(Launch launch, std::function<void(platform::Result<void>)> done);
    void post(std::function<void(Navigation&)> work);

    /// Waits, before the program ends, until the main thread has done its work and every message is out, or the time is
    /// over. Any thread but the main thread.
    void finish(std::chrono::milliseconds atMost);

  private:
    /// Waits until the main thread has done all that it has been handed so far, or the time is over.
    void catchUp(std::chrono::steady_clock::time_point deadline);

    Navigation navigation_;
};

} // namespace settings
