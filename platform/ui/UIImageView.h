#pragma once

#include "platform/ui/UIImage.h"
#include "platform/ui/UIView.h"

namespace platform {

/// A picture, stretched over the whole view. Touches go through it to the view around it. Main thread.
class PLATFORM_EXPORT UIImageView final : public UIView {
  public:
    UIImageView() { setUserInteractionEnabled(false); }

    /// As large as the picture.
    bool initWithImage(UIImageRef image) {
        image_ = std::move(image);
        return initWithFrame({{0, 0}, image_ ? image_->size() : CGSize{}});
    }

    /// Null for no picture.
    [[nodiscard]] const UIImageRef& image() const { return image_; }
    void setImage(UIImageRef image) { image_ = std::move(image); }

  private:
    UIImageRef image_;
};

} // namespace platform
