#include "platform/ui/UITableViewCell.h"

#include <utility>

namespace platform {

bool UITableViewCell::initWithStyle(UITableViewCellStyle /*style*/, std::string reuseIdentifier) {
    if (!initWithFrame({})) return false;
    reuseIdentifier_ = std::move(reuseIdentifier);
    textLabel_ = make<UILabel>(CGRect{});
    detailTextLabel_ = make<UILabel>(CGRect{});
    imageView_ = make<UIImageView>(CGRect{});
    addSubview(imageView_);
    addSubview(textLabel_);
    addSubview(detailTextLabel_);
    return true;
}

} // namespace platform
