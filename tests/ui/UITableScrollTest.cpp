#include "platform/ui/UITableView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace platform;
using testing::ElementsAre;

/// A list that says only what it has to.
struct Plain : UITableViewDataSource, UITableViewDelegate {
    std::vector<NSIndexPath> taps;

    int numberOfRowsInSection(UITableView& /*table*/, int /*section*/) override { return 100; }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        auto cell = make<UITableViewCell>(UITableViewCellStyleDefault, "cell");
        cell->textLabel().setText(std::to_string(path.row));
        return cell;
    }
    void didSelectRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override { taps.push_back(path); }
};

struct PlainTable : testing::Test {
    Plain plain;
    std::shared_ptr<UITableView> table;

    PlainTable() {
        table = make<UITableView>(CGRectMake(0, 0, 300, 440), UITableViewStyleGrouped);
        table->setDataSource(&plain);
        table->setDelegate(&plain);
    }
    /// The first and the last row that has a cell.
    std::pair<int, int> ends() {
        return {table->visibleCells().begin()->first.row, table->visibleCells().rbegin()->first.row};
    }
    std::pair<int, int> endsAfter(int row, UITableViewScrollPosition position) {
        table->scrollToRowAtIndexPath({0, row}, position, false);
        return ends();
    }
};

TEST_F(PlainTable, HasOneSectionOfRowsThatCannotBeMoved) {
    table->layoutIfNeeded();
    ASSERT_EQ(table->numberOfSections(), 1);
    EXPECT_EQ(table->layout().section(0).header, "");
    EXPECT_EQ(table->layout().section(0).footer, "");
    EXPECT_EQ(table->layout().section(0).rowHeight, 44);
    table->setEditing(true);
    EXPECT_FALSE(table->canMoveRow({0, 0}));
}

TEST_F(PlainTable, KeepsATappedRowSelectedUntilItIsDeselected) {
    table->layoutIfNeeded();
    EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
    table->tapRow({0, 3});
    EXPECT_THAT(plain.taps, ElementsAre(NSIndexPath{0, 3}));
    EXPECT_EQ(table->indexPathForSelectedRow(), (NSIndexPath{0, 3}));
    table->deselectRowAtIndexPath({0, 2}, true);
    EXPECT_EQ(table->indexPathForSelectedRow(), (NSIndexPath{0, 3}));
    EXPECT_FALSE(table->deselectsAnimated());
    table->deselectRowAtIndexPath({0, 3}, true);
    EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
    EXPECT_TRUE(table->deselectsAnimated());
    table->tapRow({0, 3});
    table->deselectRowAtIndexPath({0, 3}, false);
    EXPECT_FALSE(table->deselectsAnimated());
}

TEST_F(PlainTable, SelectsNothingWhileItIsEditingOrWhereThereIsNoRow) {
    table->layoutIfNeeded();
    table->tapRow({0, 100});
    table->setEditing(true);
    table->tapRow({0, 3});
    EXPECT_TRUE(plain.taps.empty());
    EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
}

TEST_F(PlainTable, LoadsToScrollAndMakesTheCellsAroundTheRowOnly) {
    EXPECT_EQ(endsAfter(50, UITableViewScrollPositionMiddle), std::pair(45, 55));
    EXPECT_EQ(table->visibleCells().size(), 11U);
}

TEST_F(PlainTable, PutsARowInEachPosition) {
    table->layoutIfNeeded();
    EXPECT_EQ(endsAfter(50, UITableViewScrollPositionTop), std::pair(50, 59));
    EXPECT_EQ(endsAfter(50, UITableViewScrollPositionBottom), std::pair(41, 50));
    EXPECT_EQ(endsAfter(45, UITableViewScrollPositionNone), std::pair(41, 50)) << "it is seen already";
    EXPECT_EQ(endsAfter(60, UITableViewScrollPositionNone), std::pair(51, 60));
    EXPECT_EQ(endsAfter(40, UITableViewScrollPositionNone), std::pair(40, 49));
}

TEST_F(PlainTable, ScrollsNoFurtherThanItGoes) {
    EXPECT_EQ(endsAfter(0, UITableViewScrollPositionMiddle), std::pair(0, 8)) << "beneath the header";
    EXPECT_EQ(endsAfter(99, UITableViewScrollPositionMiddle), std::pair(90, 99)) << "above the footer";
}

TEST_F(PlainTable, AsksItsWindowToScrollOnceForEachTime) {
    EXPECT_EQ(table->scrollRequest().serial, 0U);
    table->scrollToRowAtIndexPath({0, 50}, UITableViewScrollPositionMiddle, true);
    const auto first = table->scrollRequest();
    EXPECT_EQ(first.row, (NSIndexPath{0, 50}));
    EXPECT_EQ(first.position, UITableViewScrollPositionMiddle);
    EXPECT_TRUE(first.animated);
    table->scrollToRowAtIndexPath({0, 50}, UITableViewScrollPositionMiddle, true);
    EXPECT_NE(table->scrollRequest().serial, first.serial);
}

TEST_F(PlainTable, DoesNotScrollToAMissingRow) {
    for (const NSIndexPath path : {NSIndexPath{0, 100}, {0, -1}, {1, 0}})
        table->scrollToRowAtIndexPath(path, UITableViewScrollPositionTop, false);
    EXPECT_EQ(table->scrollRequest().serial, 0U);
    EXPECT_EQ(ends().first, 0);
}

TEST_F(PlainTable, KeepsAsManyCellsAroundAsItsWindowHasAskedFor) {
    table->layoutIfNeeded();
    table->setViewport(-88, 440 + 88);
    EXPECT_EQ(endsAfter(50, UITableViewScrollPositionMiddle), std::pair(43, 57));
    table->setViewport(0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(endsAfter(3, UITableViewScrollPositionMiddle), std::pair(0, 99));
}

} // namespace
