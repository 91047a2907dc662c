#pragma once

#include "platform/foundation/Class.h"
#include "platform/foundation/Value.h"
#include "platform/ui/UIImage.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// What kind of row a record describes; the platform's numbers.
enum PSCellType : int {
    PSGroupCell = 0,
    PSLinkCell = 1,
    PSLinkListCell = 2,
    PSListItemCell = 3, ///< one option on an option-list page
    PSSliderCell = 5,
    PSSwitchCell = 6,
    PSStaticTextCell = 7,
    PSEditTextCell = 8,
    PSSecureEditTextCell = 12,
    PSButtonCell = 13,
};

class PSSpecifier;
using PSSpecifierRef = std::shared_ptr<PSSpecifier>;

/// Operations that a row calls on its target; empty for none.
using SetAction = std::function<void(NSObject& target, const Value& value, PSSpecifier& row)>;
using GetAction = std::function<Value(NSObject& target, PSSpecifier& row)>;
using ButtonAction = std::function<void(NSObject& target, PSSpecifier& row)>;

/// Names an operation of a class, for later calls on a target of that class: `selector(&RootPage::setValue)`.
template<class Target, class Result, class... Arguments>
auto selector(Result (Target::*operation)(Arguments...)) {
    return [operation](NSObject& target, Arguments... arguments) -> Result {
        return (static_cast<Target&>(target).*operation)(std::forward<Arguments>(arguments)...);
    };
}

/// The page that a row opens: a class, or the name of a class, which is looked up when the row is tapped. Main thread.
class PLATFORM_EXPORT PSDetail {
  public:
    PSDetail() = default;
    PSDetail(const char* name) : name_(name) {}
    PSDetail(Class known) : name_(known ? known->name : ""), known_(known) {}

    /// Empty for a row that opens nothing.
    [[nodiscard]] const std::string& name() const { return name_; }
    /// Null when there is no class of that name.
    [[nodiscard]] Class resolve() const { return known_ ? known_ : NSClassFromString(name_); }

  private:
    std::string name_;
    Class known_ = nullptr;
};

/// One row of a settings page: the record from which the Settings application draws it.
///
/// The row does not own its target, the page. Main thread.
class PLATFORM_EXPORT PSSpecifier {
  public:
    /// `edit` is false for every row of a settings page.
    [[nodiscard]] static PSSpecifierRef preferenceSpecifierNamed(std::string name, NSObject* target, SetAction set,
                                                                 GetAction get, PSDetail detail, PSCellType cell,
                                                                 bool edit);
    virtual ~PSSpecifier();
    PSSpecifier(const PSSpecifier&) = delete;
    PSSpecifier& operator=(const PSSpecifier&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] NSObject* target() const { return target_; }
    [[nodiscard]] const SetAction& setAction() const { return set_; }
    [[nodiscard]] const GetAction& getAction() const { return get_; }
    [[nodiscard]] const PSDetail& detail() const { return detail_; }
    [[nodiscard]] PSCellType cellType() const { return cell_; }
    [[nodiscard]] bool edit() const { return edit_; }

    /// What tapping a button calls.
    ButtonAction action;

    /// The preference key, which is the property "id". Empty without one.
    [[nodiscard]] std::string identifier() const;
    void setIdentifier(const std::string& identifier) { setProperty(identifier, "id"); }

    /// The platform reads the keys "id", "footerText", "min", "max" and "showValue". nil when the property is not set.
    [[nodiscard]] Value property(const std::string& key) const;
    void setProperty(Value value, const std::string& key) { properties_.insert_or_assign(key, std::move(value)); }
    /// The one property that is a picture is "iconImage". A null picture counts as set: hasProperty() is true then.
    [[nodiscard]] UIImageRef imageProperty(const std::string& key) const;
    void setProperty(UIImageRef image, const std::string& key) { images_.insert_or_assign(key, std::move(image)); }
    [[nodiscard]] bool hasProperty(const std::string& key) const {
        return properties_.contains(key) || images_.contains(key);
    }

    /// The options of an option list; the three lists correspond by position, which is not checked.
    void setValues(std::vector<Value> values, std::vector<std::string> titles, std::vector<std::string> shortTitles);
    [[nodiscard]] const std::vector<Value>& values() const { return values_; }
    [[nodiscard]] const std::vector<std::string>& titles() const { return titles_; }
    [[nodiscard]] const std::vector<std::string>& shortTitles() const { return shortTitles_; }

    /// Calls the get operation on the target; nil without an operation or a target.
    [[nodiscard]] Value performGetter() { return target_ && get_ ? get_(*target_, *this) : Value(); }
    /// Calls the set operation on the target, if there are both.
    void performSetter(const Value& value) {
        if (target_ && set_) set_(*target_, value, *this);
    }
    /// Calls the action on the target, if there are both.
    void performAction() {
        if (target_ && action) action(*target_, *this);
    }

  protected:
    PSSpecifier(std::string name, NSObject* target, SetAction set, GetAction get, PSDetail detail, PSCellType cell,
                bool edit);

  private:
    std::string name_;
    NSObject* target_;
    SetAction set_;
    GetAction get_;
    PSDetail detail_;
    PSCellType cell_;
    bool edit_;
    std::map<std::string, Value> properties_;
    std::map<std::string, UIImageRef> images_;
    std::vector<Value> values_;
    std::vector<std::string> titles_;
    std::vector<std::string> shortTitles_;
};

} // namespace platform
