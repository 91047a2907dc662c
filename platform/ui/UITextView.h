#pragma once

#include "platform/ui/UIFont.h"
#include "platform/ui/UIView.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace platform {

/// A text of many lines that scrolls when it is higher than the view. Main thread.
class PLATFORM_EXPORT UITextView final : public UIView {
  public:
    [[nodiscard]] const std::string& text() const { return *text_; }
    /// The same to share, since a text may have many megabytes. Another text is another object.
    [[nodiscard]] const std::shared_ptr<const std::string>& sharedText() const { return text_; }
    void setText(std::string text) {
        if (text != *text_) text_ = std::make_shared<const std::string>(std::move(text));
    }

    /// Never null; the system's font at 12 points unless set.
    [[nodiscard]] const UIFontRef& font() const { return font_; }
    void setFont(UIFontRef font) {
        if (font) font_ = std::move(font);
    }

    /// Kept on purpose, since pages state it, although the window never edits a text view's text.
    [[nodiscard]] bool isEditable() const { return editable_; }
    void setEditable(bool editable) { editable_ = editable; }
    [[nodiscard]] bool isSelectable() const { return selectable_; }
    void setSelectable(bool selectable) { selectable_ = selectable; }

    /// Tells text views apart; a number comes twice in a process only where a view has taken over from another.
    [[nodiscard]] std::uint64_t id() const { return id_; }
    /// To the window, this view is the former one from now on.
    void takeOver(const UITextView& former) { id_ = former.id_; }

  private:
    std::uint64_t id_ = newId();
    std::shared_ptr<const std::string> text_ = std::make_shared<const std::string>();
    UIFontRef font_ = UIFont::systemFontOfSize(12.0);
    bool editable_ = true;
    bool selectable_ = true;
};

} // namespace platform
