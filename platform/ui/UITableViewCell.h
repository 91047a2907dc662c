#pragma once

#include "platform/ui/UIImage.h"
#include "platform/ui/UIView.h"

#include <memory>
#include <string>

namespace platform {

enum UITableViewCellStyle : int { UITableViewCellStyleDefault = 0 };
enum UITableViewCellEditingStyle : int { UITableViewCellEditingStyleNone = 0 };

/// A line of text. Main thread.
class PLATFORM_EXPORT UILabel final : public UIView {
  public:
    /// Empty is nothing.
    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(std::string text) { text_ = std::move(text); }

  private:
    std::string text_;
};

/// A picture in its place. Main thread.
class PLATFORM_EXPORT UIImageView final : public UIView {
  public:
    /// Null is nothing.
    [[nodiscard]] const UIImageRef& image() const { return image_; }
    void setImage(UIImageRef image) { image_ = std::move(image); }

  private:
    UIImageRef image_;
};

/// One row of a table. A cell that has scrolled out of view serves again for another row, with whatever the row before
/// left in it. Main thread.
class PLATFORM_EXPORT UITableViewCell final : public UIView {
  public:
    bool initWithStyle(UITableViewCellStyle style, std::string reuseIdentifier);

    [[nodiscard]] const std::string& reuseIdentifier() const { return reuseIdentifier_; }
    [[nodiscard]] UILabel& textLabel() { return *textLabel_; }
    [[nodiscard]] UILabel& detailTextLabel() { return *detailTextLabel_; }
    [[nodiscard]] UIImageView& imageView() { return *imageView_; }

  private:
    std::string reuseIdentifier_;
    std::shared_ptr<UILabel> textLabel_;
    std::shared_ptr<UILabel> detailTextLabel_;
    std::shared_ptr<UIImageView> imageView_;
};

} // namespace platform
