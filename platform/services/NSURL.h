#pragma once

#include "platform/Export.h"

#include <optional>
#include <string>
#include <utility>

namespace platform {

/// An address.
///
///     if (const auto url = NSURL::URLWithString("twitter://user?screen_name=nevo_lumora")) url->scheme(); // "twitter"
///
/// Any thread.
class PLATFORM_EXPORT NSURL {
  public:
    /// Nothing for a text that is no whole address, with a scheme and with no character that an address cannot have.
    [[nodiscard]] static std::optional<NSURL> URLWithString(const std::string& text);

    [[nodiscard]] const std::string& absoluteString() const { return text_; }
    /// In small letters.
    [[nodiscard]] const std::string& scheme() const { return scheme_; }

  private:
    NSURL(std::string text, std::string scheme) : text_(std::move(text)), scheme_(std::move(scheme)) {}
    std::string text_;
    std::string scheme_;
};

} // namespace platform
