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
    /// Nothing unless the text is a whole address: with a scheme, and made of the characters that addresses may have.
    [[nodiscard]] static std::optional<NSURL> URLWithString(const std::string& text);

    [[nodiscard]] const std::string& absoluteString() const { return text_; }
    /// In lower case.
    [[nodiscard]] const std::string& scheme() const { return scheme_; }

  private:
    NSURL(std::string text, std::string scheme) : text_(std::move(text)), scheme_(std::move(scheme)) {}
    std::string text_;
    std::string scheme_;
};

} // namespace platform
