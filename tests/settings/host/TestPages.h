#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSListItemsController.h"
#include "platform/preferences/PSTextFieldSpecifier.h"
#include "platform/ui/Move.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/UIImageView.h"
#include "platform/ui/UITableView.h"
#include "platform/ui/UITextView.h"
#include "platform/ui/UITouch.h"

#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tests {

/// A page of every kind of row that keeps its values in memory and counts what is done to it.
class RowsPage : public platform::PSListController {
  public:
    static inline std::map<std::string, platform::Value> values;
    static inline std::vector<std::pair<std::string, platform::Value>> changes;
    static inline std::vector<bool> appearances; ///< the animated flag of each
    static inline int buttonTaps = 0;

    static void reset() {
        values.clear();
        changes.clear();
        appearances.clear();
        buttonTaps = 0;
    }

    platform::Value getValue(platform::PSSpecifier& row) { return values[row.identifier()]; }
    void setValue(const platform::Value& value, platform::PSSpecifier& row) {
        changes.emplace_back(row.identifier(), value);
        values[row.identifier()] = value;
    }
    void press(platform::PSSpecifier& /*sender*/) { ++buttonTaps; }

    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        appearances.push_back(animated);
    }

    platform::PSSpecifierList specifiers() override {
        using namespace platform;
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
    platform::PSSpecifierRef row(const char* name, const char* identifier, platform::PSCellType cell,
                                 platform::PSDetail detail = {}) {
        auto made = platform::PSSpecifier::preferenceSpecifierNamed(name, this, platform::selector(&RowsPage::setValue),
                                                                    platform::selector(&RowsPage::getValue),
                                                                    std::move(detail), cell, false);
        made->setIdentifier(identifier);
        return made;
    }
};

class HostedView : public platform::UIView {
  public:
    static inline int made = 0;

    bool initWithFrame(const platform::CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        ++made;
        setBackgroundColor(platform::UIColor::whiteColor());
        const auto seen = platform::make<UIView>(platform::CGRectMake(1, 2, 3, 4));
        const auto hidden = platform::make<UIView>(platform::CGRectMake(0, 0, 9, 9));
        hidden->setHidden(true);
        addSubview(seen);
        addSubview(hidden);
        return true;
    }
};

/// A page whose whole content is one view, made anew at each appearance.
class HostedPage : public platform::PSListController {
  public:
    static inline unsigned mask = platform::UIViewAutoresizingNone;
    static inline bool viewless = false;

    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        if (platform::UINavigationItem* item = navigationItem()) item->title = "Fonts";
        const platform::CGRect frame = view() ? view()->frame() : platform::CGRect{};
        auto next = viewless ? nullptr : platform::make<HostedView>(frame);
        if (next) next->subviews().front()->setAutoresizingMask(mask);
        setView(next);
    }
};

/// A page that hosts a table of two sections, whose rows can be moved.
class TableView : public platform::UIView,
                  public platform::UITableViewDataSource,
                  public platform::UITableViewDelegate {
  public:
    static inline std::vector<std::vector<std::string>> sections;
    static inline int cellsAsked = 0;

    bool initWithFrame(const platform::CGRect& frame) override {
        using namespace platform;
        if (!UIView::initWithFrame(frame)) return false;
        const auto table =
            make<UITableView>(CGRectMake(0, 10, frame.size.width, frame.size.height - 10), UITableViewStyleGrouped);
        table->setDataSource(this);
        table->setDelegate(this);
        table->setEditing(true);
        addSubview(table);
        return true;
    }
    int numberOfSectionsInTableView(platform::UITableView& /*table*/) override {
        return static_cast<int>(sections.size());
    }
    int numberOfRowsInSection(platform::UITableView& /*table*/, int section) override {
        return static_cast<int>(sections.at(static_cast<std::size_t>(section)).size());
    }
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& /*table*/,
                                                                     platform::NSIndexPath path) override {
        ++cellsAsked;
        const auto& row = sections.at(static_cast<std::size_t>(path.section)).at(static_cast<std::size_t>(path.row));
        auto cell = platform::make<platform::UITableViewCell>(platform::UITableViewCellStyleDefault, "cell");
        cell->textLabel().setText("Title of " + row);
        cell->detailTextLabel().setText(row);
        return cell;
    }
    std::string titleForHeaderInSection(platform::UITableView& /*table*/, int section) override {
        return section == 0 ? "Enabled" : "Disabled";
    }
    std::string titleForFooterInSection(platform::UITableView& /*table*/, int /*section*/) override { return " "; }
    bool canMoveRowAtIndexPath(platform::UITableView& /*table*/, platform::NSIndexPath path) override {
        return sections.at(static_cast<std::size_t>(path.section)).at(static_cast<std::size_t>(path.row)) != "fixed";
    }
    void moveRowAtIndexPath(platform::UITableView& /*table*/, platform::NSIndexPath from,
                            platform::NSIndexPath to) override {
        platform::moveRow(sections.at(static_cast<std::size_t>(from.section)), from.row,
                          sections.at(static_cast<std::size_t>(to.section)), to.row);
    }
    double heightForRowAtIndexPath(platform::UITableView& /*table*/, platform::NSIndexPath /*path*/) override {
        return 40;
    }
    platform::UITableViewCellEditingStyle editingStyleForRowAtIndexPath(platform::UITableView& /*table*/,
                                                                        platform::NSIndexPath path) override {
        return path == platform::NSIndexPath{0, 1}   ? platform::UITableViewCellEditingStyleDelete
               : path == platform::NSIndexPath{0, 2} ? platform::UITableViewCellEditingStyleInsert
                                                     : platform::UITableViewCellEditingStyleNone;
    }
    bool shouldIndentWhileEditingRowAtIndexPath(platform::UITableView& /*table*/, platform::NSIndexPath path) override {
        return path == platform::NSIndexPath{0, 1};
    }
};

class TablePage : public platform::PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(platform::make<TableView>(view()->frame()));
    }
};

/// A colour control in small: a field whose mark follows the finger, with a button below it and a text beside that.
/// Keeps what reaches it.
class FieldView : public platform::UIView {
  public:
    static inline std::vector<std::string> touches; ///< "began 5 6"
    static inline int presses = 0;

    static void reset() {
        touches.clear();
        presses = 0;
    }

    bool initWithFrame(const platform::CGRect& frame) override {
        using namespace platform;
        if (!UIView::initWithFrame(frame)) return false;
        field_ = make<UIImageView>(CGRectMake(20, 30, 200, 100));
        field_->setImage(std::make_shared<const UIImage>(CGSize{1, 1}, Data{1}, Data{}));
        field_->layer().cornerRadius = 2;
        field_->setClipsToBounds(true);
        mark_ = make<UIView>(CGRectMake(0, 0, 10, 10));
        mark_->setUserInteractionEnabled(false);
        const auto button = make<UIButton>(CGRectMake(20, 200, 50, 40));
        button->setAccessibilityLabel("Press");
        button->addTarget(*this, &FieldView::press, UIControlEventTouchUpInside);
        hidden_ = make<UIButton>(CGRectMake(80, 200, 50, 40));
        hidden_->setHidden(true);
        text_ = make<UITextView>(CGRectMake(150, 200, 100, 60));
        text_->setText("Text");
        text_->setSelectable(false);
        text_->setFont(UIFont::systemFontOfSize(15));
        addSubview(field_);
        addSubview(mark_);
        addSubview(button);
        addSubview(hidden_);
        addSubview(text_);
        return true;
    }
    void drawRect(const platform::CGRect& rect) override { platform::UIGraphicsGetCurrentContext()->clipToRect(rect); }

    void touchesBegan(const platform::UITouches& all, const platform::UIEvent& /*event*/) override {
        take(all, "began");
    }
    void touchesMoved(const platform::UITouches& all, const platform::UIEvent& /*event*/) override {
        take(all, "moved");
    }
    void touchesEnded(const platform::UITouches& all, const platform::UIEvent& /*event*/) override {
        take(all, "ended");
    }
    void touchesCancelled(const platform::UITouches& all, const platform::UIEvent& /*event*/) override {
        for (std::size_t i = 0; i < all.size(); ++i)
            touches.emplace_back("cancelled");
    }

    [[nodiscard]] std::vector<platform::UIAccessibilityElement> accessibilityElements() const override {
        const platform::CGRect frame = field_->frame();
        return {{"Field", frame, {{"Across", (mark_->center().x - frame.origin.x) / frame.size.width, false, false}}}};
    }

  private:
    void press(platform::UIButton& /*sender*/) { ++presses; }
    void take(const platform::UITouches& all, const char* what) {
        for (const auto& touch : all) {
            const platform::CGPoint place = touch->locationInView(*this);
            touches.push_back(std::string(what) + " " + std::to_string(int(place.x)) + " " +
                              std::to_string(int(place.y)));
            if (platform::CGRectContainsPoint(field_->frame(), place)) mark_->setCenter(place);
        }
    }

    std::shared_ptr<platform::UIImageView> field_;
    std::shared_ptr<platform::UIView> mark_;
    std::shared_ptr<platform::UIButton> hidden_;
    std::shared_ptr<platform::UITextView> text_;
};

/// Its view lies within another one, 10 points to the right and 20 down.
class FieldPage : public platform::PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        const auto ground = platform::make<platform::UIView>(view()->frame());
        ground->addSubview(platform::make<FieldView>(platform::CGRectMake(10, 20, 300, 300)));
        setView(ground);
    }
};

/// A page that hosts a table of a hundred rows to choose from, scrolled to row 50.
class ChoiceView : public platform::UIView,
                   public platform::UITableViewDataSource,
                   public platform::UITableViewDelegate {
  public:
    static inline platform::UITableViewStyle style = platform::UITableViewStyleGrouped;

    bool initWithFrame(const platform::CGRect& frame) override {
        using namespace platform;
        if (!UIView::initWithFrame(frame)) return false;
        table_ = make<UITableView>(frame, style);
        table_->setDataSource(this);
        table_->setDelegate(this);
        addSubview(table_);
        table_->scrollToRowAtIndexPath({0, 50}, UITableViewScrollPositionMiddle, true);
        return true;
    }
    int numberOfRowsInSection(platform::UITableView& /*table*/, int /*section*/) override { return 100; }
    std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& /*table*/,
                                                                     platform::NSIndexPath path) override {
        auto cell = platform::make<platform::UITableViewCell>(platform::UITableViewCellStyleDefault, "cell");
        if (path.row == 51)
            cell->textLabel().setFont(std::make_shared<const platform::UIFont>("Inter-Bold", 17, "/fonts/a.otf", 0));
        return cell;
    }
    void didSelectRowAtIndexPath(platform::UITableView& table, platform::NSIndexPath path) override {
        table.cellForRowAtIndexPath(path)->setAccessoryType(platform::UITableViewCellAccessoryCheckmark);
        if (path.row == 53) table.deselectRowAtIndexPath(path, true);
    }

  private:
    std::shared_ptr<platform::UITableView> table_;
};

class ChoicePage : public platform::PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(platform::make<ChoiceView>(view()->frame()));
    }
};

/// A page of a platform version whose pages have no navigation item.
class BarePage : public HostedPage {
  public:
    platform::UINavigationItem* navigationItem() override { return nullptr; }
};

class RefusedPage : public platform::PSListController {
  public:
    bool init() override { return false; }
};

/// A page that fails in one place, or nowhere.
class FaultyPage : public platform::PSListController {
  public:
    static inline std::string fault;

    FaultyPage() { failIn("constructor"); }
    bool init() override {
        failIn("init");
        return PSListController::init();
    }
    void viewWillAppear(bool animated) override {
        failIn("appearance");
        PSListController::viewWillAppear(animated);
    }
    platform::PSSpecifierList specifiers() override {
        failIn("rows");
        return fault == "row" ? std::make_shared<const std::vector<platform::PSSpecifierRef>>(1) : nullptr;
    }

  private:
    static void failIn(const std::string& place) {
        if (fault == place) throw std::runtime_error("no page today");
    }
};

class NotAPage : public platform::NSObject {
  public:
    [[nodiscard]] bool init() const { return true; }
};

PLATFORM_CLASS(RowsPage)
PLATFORM_CLASS(HostedPage)
PLATFORM_CLASS(TablePage)
PLATFORM_CLASS(FieldPage)
PLATFORM_CLASS(ChoicePage)
PLATFORM_CLASS(BarePage)
PLATFORM_CLASS(RefusedPage)
PLATFORM_CLASS(FaultyPage)
PLATFORM_CLASS(NotAPage)

} // namespace tests
