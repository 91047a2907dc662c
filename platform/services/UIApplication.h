#pragma once

#include "platform/services/NSURL.h"

namespace platform {

/// The application as its pages see it.
///
///     UIApplication::sharedApplication().openURL(*NSURL::URLWithString("mailto:a@b.example"));
///
/// Main thread.
class PLATFORM_EXPORT UIApplication {
  public:
    [[nodiscard]] static UIApplication& sharedApplication();

    /// Hands the address to the program registered for its scheme, without waiting for it. False, and nothing else,
    /// when there is none or it does not start.
    bool openURL(const NSURL& url);
};

} // namespace platform
