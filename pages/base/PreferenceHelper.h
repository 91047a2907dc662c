#pragma once

#include "link/KitExport.h"
#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSTextFieldSpecifier.h"

#include <string>
#include <vector>

namespace lumora {

/// The row builder: makes the rows of one page.
///
///     auto helper = make<PreferenceHelper>(this, selector(&Page::setValue), selector(&Page::getValue));
///     rows = {
///         helper->header("Options"),
///         helper->toggle("Badges", "kAppBadgesEnabled"),
///     };
///
/// Editable rows read and write through the page's two operations, under the preference key that is their identifier.
/// The builder refers to its page without owning it; the page owns the builder, because rows of static text have the
/// builder as their target. The builder checks nothing. Main thread.
class LUMORA_KIT_EXPORT PreferenceHelper final : public platform::NSObject {
  public:
    bool initWithTarget(platform::PSListController* target, platform::SetAction set, platform::GetAction get);

    using Row = platform::PSSpecifierRef;

    Row button(const std::string& title, platform::ButtonAction action);
    /// A row that opens the page class `to`.
    Row link(const std::string& title, platform::PSDetail to);
    /// A row that opens a list of the titles; tapping a title stores the value at its position.
    Row link(const std::string& title, const std::string& identifier, const std::vector<std::string>& titles,
             std::vector<platform::Value> values);
    Row toggle(const std::string& title, const std::string& identifier);
    Row toggle(const std::string& title, const std::string& identifier, platform::SetAction set,
               platform::GetAction get);
    /// Begins a group, to which the rows after it belong.
    Row header(const std::string& text);
    /// Begins a group without a header, with this text beneath its rows.
    Row footer(const std::string& text);
    Row header(const std::string& text, const std::string& footer);
    Row spacer();
    Row static_(const std::string& text);
    /// A slider without a title, which shows its value. Bounds are single-precision numbers.
    Row slider(const std::string& identifier, float min, float max);
    Row slider(const std::string& identifier, float min, float max, bool showValue);
    /// A field without a title.
    Row field(const std::string& placeholder, const std::string& identifier);
    Row field(const std::string& placeholder, const std::string& identifier, bool secure);
    /// Gives the row an icon from the resources of the bundle that holds the target page's class; returns the row.
    Row specifier(const Row& row, const std::string& withIcon);

    [[nodiscard]] platform::PSListController* target() const { return target_; }
    void setTarget(platform::PSListController* target) { target_ = target; }
    [[nodiscard]] const platform::SetAction& setAction() const { return setAction_; }
    void setSetAction(platform::SetAction action) { setAction_ = std::move(action); }
    [[nodiscard]] const platform::GetAction& getAction() const { return getAction_; }
    void setGetAction(platform::GetAction action) { getAction_ = std::move(action); }

  private:
    platform::PSListController* target_ = nullptr;
    platform::SetAction setAction_;
    platform::GetAction getAction_;
};

} // namespace lumora
