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

[[nodiscard]] constexpr platform::CGSize contentSizeOf(platform::CGSize window) {
    return {window.width, window.height > kBarHeight ? window.height - kBarHeight : 0};
}

/// What the main thread opens first.
struct Launch {
    std::filesystem::path bundle; ///< the folder of the settings bundle
    std::string pageClass;        ///< empty for the bundle's principal class
    platform::CGSize contentSize; ///< in points, of what is under the navigation bar
};

/// Whether the main thread waits for the tweak's answer just now. Any thread.
[[nodiscard]] bool waitsForTweak();

/// What the main thread is at while that page does not come, to be told behind "timed out waiting for": the tweak's
/// answer, or the page itself. Any thread.
[[nodiscard]] std::string whatBlocks(const std::string& page);

/// Starts the permanent main thread, which alone calls into the bundle, and hands it work.
///
///     auto& host = *new Host(show);   // never destroyed: the main thread may be blocked in it for good
///     host.launch({.bundle = platform::standardBundle()}, done);
///     host.post([](Navigation& navigation) { navigation.back(7); });
///
/// One per process. Its operations return at once and may be called from any thread; what they are given runs on the
/// main thread, `show` included, in the order of the calls.
class Host {
  public:
    explicit Host(Navigation::Show show);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Loads the bundle and opens its page. `done` is told of success when the page stands, or why there is none; it
    /// is never called when making the page blocks for good.
    void launch(Launch launch, std::function<void(platform::Result<void>)> done);
    void post(std::function<void(Navigation&)> work);

    /// For a program that is about to leave: waits until the main thread has done what it was handed and every message
    /// is out, at most so long. Not to be called on the main thread.
    void finish(std::chrono::milliseconds atMost);

  private:
    /// Waits until the main thread has done what it has been handed so far, or the time is over.
    void catchUp(std::chrono::steady_clock::time_point deadline);

    Navigation navigation_;
};

} // namespace settings
