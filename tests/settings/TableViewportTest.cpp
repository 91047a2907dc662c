#include "platform/preferences/PSListController.h"
#include "platform/ui/UITableView.h"
#include "settings/host/Navigation.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace platform;
using namespace settings;

/// A hundred rows in one section, made anew whenever their page appears.
class HundredRows : public UIView, public UITableViewDataSource, public UITableViewDelegate {
  public:
    bool initWithFrame(const CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        table_ = make<UITableView>(frame, UITableViewStyleGrouped);
        table_->setDataSource(this);
        table_->setDelegate(this);
        addSubview(table_);
        return true;
    }
    int numberOfSectionsInTableView(UITableView& /*tableView*/) override { return 1; }
    int numberOfRowsInSection(UITableView& /*tableView*/, int /*section*/) override { return 100; }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) override {
        return make<UITableViewCell>(UITableViewCellStyleDefault, "cell");
    }
    std::string titleForHeaderInSection(UITableView& /*tableView*/, int /*section*/) override { return "Header"; }
    std::string titleForFooterInSection(UITableView& /*tableView*/, int /*section*/) override { return "Footer"; }
    bool canMoveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) override { return false; }
    void moveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*from*/, NSIndexPath /*to*/) override {}
    double heightForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) override { return 40; }
    UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView& /*tableView*/,
                                                              NSIndexPath /*path*/) override {
        return UITableViewCellEditingStyleNone;
    }
    bool shouldIndentWhileEditingRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) override {
        return false;
    }

  private:
    std::shared_ptr<UITableView> table_;
};

class HundredRowsPage : public PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(make<HundredRows>(CGRectMake(0, 0, 390, 400)));
    }
};

PLATFORM_CLASS(HundredRowsPage)

class TableViewportTest : public testing::Test {
  protected:
    TableViewportTest() : navigation([this](StackSnapshot stack) { shown = std::move(stack); }) {
        navigation.open(NSClassFromString("HundredRowsPage"), "First");
    }
    const PageSnapshot& top() const { return *shown.pages.back(); }
    const SectionSnapshot& section() const { return top().table->sections.at(0); }

    StackSnapshot shown;
    Navigation navigation;
};

TEST_F(TableViewportTest, MakesTheCellsOfWhatIsInView) {
    navigation.tableScrolled(top().id, {1000, 1200, {{30, 20}}});
    EXPECT_EQ(section().headerHeight, 30);
    EXPECT_EQ(section().firstCell, 24);
    EXPECT_EQ(section().cells.size(), 6u);
}

TEST_F(TableViewportTest, MakesAllCellsWhenThereIsNoEndToTheView) {
    navigation.tableScrolled(top().id, {0, std::numeric_limits<double>::infinity(), {}});
    EXPECT_EQ(section().firstCell, 0);
    EXPECT_EQ(section().cells.size(), 100u);
}

TEST_F(TableViewportTest, KeepsWhatIsInViewForTheTableThatIsMadeWhenAPageAppearsAgain) {
    navigation.tableScrolled(top().id, {1000, 1200, {{30, 20}}});
    navigation.open(NSClassFromString("HundredRowsPage"), "Second");
    EXPECT_EQ(section().firstCell, 0);
    navigation.back(top().id);
    EXPECT_EQ(section().headerHeight, 30);
    EXPECT_EQ(section().footerHeight, 20);
    EXPECT_EQ(section().firstCell, 24);
    EXPECT_EQ(section().cells.size(), 6u);
}

} // namespace
