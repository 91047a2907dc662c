#pragma once

#include "platform/ui/UIImageView.h"
#include "platform/ui/UILabel.h"
#include "platform/ui/UIView.h"

#include <memory>
#include <string>

namespace platform {

enum UITableViewCellStyle : int { UITableViewCellStyleDefault = 0 };
enum UITableViewCellEditingStyle : int {
    UITableViewCellEditingStyleNone = 0,
    UITableViewCellEditingStyleDelete = 1,
    UITableViewCellEditingStyleInsert = 2
};

enum UITableViewCellAccessoryType : int { UITableViewCellAccessoryNone = 0, UITableViewCellAccessoryCheckmark = 3 };

/// One row of a table. A cell that has scrolled out of view serves again for another row, with the contents of the row
/// before. Main thread.
class PLATFORM_EXPORT UITableViewCell final : public UIView {
  public:
    bool initWithStyle(UITableViewCellStyle style, std::string reuseIdentifier);

    [[nodiscard]] const std::string& reuseIdentifier() const { return reuseIdentifier_; }
    [[nodiscard]] UILabel& textLabel() { return *textLabel_; }
    [[nodiscard]] UILabel& detailTextLabel() { return *detailTextLabel_; }
    [[nodiscard]] UIImageView& imageView() { return *imageView_; }
    /// What stands at the end of the row.
    [[nodiscard]] UITableViewCellAccessoryType accessoryType() const { return accessoryType_; }
    void setAccessoryType(UITableViewCellAccessoryType type) { accessoryType_ = type; }

  private:
    std::string reuseIdentifier_;
    std::shared_ptr<UILabel> textLabel_;
    std::shared_ptr<UILabel> detailTextLabel_;
    std::shared_ptr<UIImageView> imageView_;
    UITableViewCellAccessoryType accessoryType_ = UITableViewCellAccessoryNone;
};

} // namespace platform
