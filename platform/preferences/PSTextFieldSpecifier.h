#pragma once

#include "platform/preferences/PSSpecifier.h"

namespace platform {

/// A row that is a text field: a row record with a placeholder. Main thread.
class PLATFORM_EXPORT PSTextFieldSpecifier final : public PSSpecifier {
  public:
    [[nodiscard]] static std::shared_ptr<PSTextFieldSpecifier> preferenceSpecifierNamed(std::string name,
                                                                                        NSObject* target, SetAction set,
                                                                                        GetAction get, PSDetail detail,
                                                                                        PSCellType cell, bool edit);

    [[nodiscard]] const std::string& placeholder() const { return placeholder_; }
    void setPlaceholder(std::string placeholder) { placeholder_ = std::move(placeholder); }

  private:
    using PSSpecifier::PSSpecifier;
    std::string placeholder_;
};

} // namespace platform
