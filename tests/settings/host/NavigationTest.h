#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSTextFieldSpecifier.h"
#include "platform/ui/UIView.h"
#include "settings/host/Navigation.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

/// The pages that tests of the navigation go through, and what these tests share.
namespace tests {

using namespace platform;
using namespace settings;

/// A page of every kind of row that keeps its values in memory and counts what is done to it.
class RowsPage : public PSListController {
  public:
    static inline std::map<std::string, Value> values;
    static inline std::vector<std::pair<std::string, Value>> changes;
    static inline std::vector<bool> appearances; ///< the animated flag of each
    static inline int buttonTaps = 0;

    static void reset() {
        values.clear();
        changes.clear();
        appearances.clear();
        buttonTaps = 0;
    }

    Value getValue(PSSpecifier& row) { return values[row.identifier()]; }
    void setValue(const Value& value, PSSpecifier& row) {
        changes.emplace_back(row.identifier(), value);
        values[row.identifier()] = value;
    }
    void press(PSSpecifier& /*sender*/) { ++buttonTaps; }

    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        appearances.push_back(animated);
    }

    PSSpecifierList specifiers() override {
        if (_specifiers) return _specifiers;
        const auto group = row("General", "", PSGroupCell);
        group->setProperty("Below", "footerText");
        const auto slider = row("", "slider", PSSliderCell);
        slider->setProperty(0.5F, "min");
        slider->setProperty(2.0F, "max");
        slider->setProperty(true, "showValue");
        const auto options = row("Options", "options", PSLinkListCell, "PSListItemsController");
        options->setValues({5, 10, 3600}, {"Five", "Ten", "Never"}, {"5", "10", "–"});
        const auto secure = PSTextFieldSpecifier::preferenceSpecifierNamed(
            "", this, selector(&RowsPage::setValue), selector(&RowsPage::getValue), {}, PSSecureEditTextCell, false);
        secure->setIdentifier("secret");
        secure->setPlaceholder("Passcode");
        const auto button = row("Press", "", PSButtonCell);
        button->action = selector(&RowsPage::press);
        _specifiers = std::make_shared<const std::vector<PSSpecifierRef>>(std::vector<PSSpecifierRef>{
            group, row("Switch", "switch", PSSwitchCell), slider, options, secure, button,
            row("Hosted", "", PSLinkCell, "HostedPage"), row("Nowhere", "", PSLinkCell, "NoSuchClass"),
            row("No page", "", PSLinkCell, "NotAPage"), row("Refused", "", PSLinkCell, "RefusedPage"),
            row("Text", "", PSStaticTextCell)});
        return _specifiers;
    }

    enum Row : std::size_t { Group, Switch, Slider, Options, Secret, Button, Hosted, Nowhere, NoPage, Refused, Text };

  private:
    PSSpecifierRef row(const char* name, const char* identifier, PSCellType cell, PSDetail detail = {}) {
        auto made = PSSpecifier::preferenceSpecifierNamed(
            name, this, selector(&RowsPage::setValue), selector(&RowsPage::getValue), std::move(detail), cell, false);
        made->setIdentifier(identifier);
        return made;
    }
};
PLATFORM_CLASS(RowsPage)

class HostedView : public UIView {
  public:
    static inline unsigned mask = UIViewAutoresizingNone; ///< of the view in it that is seen

    bool initWithFrame(const CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        setBackgroundColor(UIColor::whiteColor());
        const auto seen = make<UIView>(CGRectMake(1, 2, 3, 4));
        seen->setAutoresizingMask(mask);
        const auto hidden = make<UIView>(CGRectMake(0, 0, 9, 9));
        hidden->setHidden(true);
        addSubview(seen);
        addSubview(hidden);
        return true;
    }
};

/// A page whose whole content is one view, made anew at each appearance.
class HostedPage : public PSListController {
  public:
    static inline bool viewless = false;

    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        if (UINavigationItem* item = navigationItem()) item->title = "Fonts";
        setView(viewless ? nullptr : make<HostedView>(view()->frame()));
    }
};
PLATFORM_CLASS(HostedPage)

class NavigationTest : public ::testing::Test {
  protected:
    NavigationTest() {
        RowsPage::reset();
        HostedView::mask = UIViewAutoresizingNone;
        HostedPage::viewless = false;
    }

    const PageSnapshot& top() const { return *shown.back().pages.back(); }
    std::size_t depth() const { return shown.back().pages.size(); }
    bool open(const char* pageClass, const char* title = "") {
        return navigation.open(NSClassFromString(pageClass), title);
    }
    void openRoot(std::map<std::string, Value> values = {}) {
        RowsPage::values = std::move(values);
        ASSERT_TRUE(open("RowsPage", "Root"));
    }
    void handle(const Event& event) { navigation.handle(top().id, event); }
    void tap(std::size_t row) { handle(RowTapped{row}); }
    void goBack() { navigation.back(top().id); }

    std::vector<StackSnapshot> shown;
    Navigation navigation{[this](StackSnapshot stack) { shown.push_back(std::move(stack)); }};
};

} // namespace tests
