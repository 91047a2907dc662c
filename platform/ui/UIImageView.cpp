#include "platform/ui/UIImageView.h"

#include <utility>

namespace platform {

bool UIImageView::initWithImage(UIImageRef image) {
    image_ = std::move(image);
    return initWithFrame({{0, 0}, image_ ? image_->size() : CGSize{}});
}

} // namespace platform
