#pragma once

#include "platform/ui/UIFont.h"
#include "platform/ui/UIView.h"

#include <string>

namespace platform {

/// A line of text. Main thread.
class PLATFORM_EXPORT UILabel final : public UIView {
  public:
    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(std::string text) { text_ = std::move(text); }

    /// Never null; the system's font at 17 points unless set.
    [[nodiscard]] const UIFontRef& font() const { return font_; }
    /// Null, as for a font that is not installed, changes nothing.
    void setFont(UIFontRef font) {
        if (font) font_ = std::move(font);
    }

  private:
    std::string text_;
    UIFontRef font_ = UIFont::systemFontOfSize(17.0);
};

} // namespace platform
