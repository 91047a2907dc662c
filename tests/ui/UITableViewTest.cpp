#include "platform/ui/UITableView.h"

#include "platform/ui/Move.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace platform;
using testing::ElementsAre;

/// A table's content in memory that counts what it is asked.
struct Content : UITableViewDataSource, UITableViewDelegate {
    std::vector<std::vector<std::string>> sections;
    double height = 40;
    bool movable = true;
    int cellsMade = 0;
    int cellsAsked = 0;
    std::vector<std::pair<NSIndexPath, NSIndexPath>> moves;

    std::vector<std::string>& rows(int section) { return sections.at(static_cast<std::size_t>(section)); }

    int numberOfSectionsInTableView(UITableView& /*table*/) override { return static_cast<int>(sections.size()); }
    int numberOfRowsInSection(UITableView& /*table*/, int section) override {
        return static_cast<int>(rows(section).size());
    }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override {
        ++cellsAsked;
        auto cell = table.dequeueReusableCellWithIdentifier("cell");
        if (!cell) {
            cell = make<UITableViewCell>(UITableViewCellStyleDefault, "cell");
            ++cellsMade;
        }
        cell->textLabel().setText(rows(path.section).at(static_cast<std::size_t>(path.row)));
        return cell;
    }
    std::string titleForHeaderInSection(UITableView& /*table*/, int section) override {
        return "Header " + std::to_string(section);
    }
    std::string titleForFooterInSection(UITableView& /*table*/, int section) override {
        return "Footer " + std::to_string(section);
    }
    std::string nameOfRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        return rows(path.section).at(static_cast<std::size_t>(path.row));
    }
    bool canMoveRowAtIndexPath(UITableView& /*table*/, NSIndexPath /*path*/) override { return movable; }
    void moveRowAtIndexPath(UITableView& /*table*/, NSIndexPath from, NSIndexPath to) override {
        moves.emplace_back(from, to);
        moveRow(rows(from.section), from.row, rows(to.section), to.row);
    }
    double heightForRowAtIndexPath(UITableView& /*table*/, NSIndexPath /*path*/) override { return height; }
    UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        return path.row == 1 ? UITableViewCellEditingStyleInsert : UITableViewCellEditingStyleNone;
    }
    bool shouldIndentWhileEditingRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        return path.row == 2;
    }
};

struct Table : testing::Test {
    Content content;
    std::shared_ptr<UITableView> table;

    void show(std::vector<std::vector<std::string>> sections, double height = 200) {
        content.sections = std::move(sections);
        table = make<UITableView>(CGRectMake(0, 0, 300, height), UITableViewStyleGrouped);
        table->setDataSource(&content);
        table->setDelegate(&content);
        table->setEditing(true);
        table->layoutIfNeeded();
        for (int i = 0; i < table->numberOfSections(); ++i)
            table->setSectionHeights(i, 50, 20);
        table->setViewport(0, height);
    }
    static std::vector<std::string> numbered(int count) {
        std::vector<std::string> rows;
        for (int i = 0; i < count; ++i)
            rows.push_back(std::to_string(i));
        return rows;
    }
    std::vector<std::string> shown() {
        std::vector<std::string> titles;
        for (const auto& [path, cell] : table->visibleCells())
            titles.push_back(cell->textLabel().text());
        return titles;
    }
};

TEST_F(Table, LoadsByItselfBeforeItIsDrawn) {
    content.sections = {{"a"}};
    table = make<UITableView>(CGRectMake(0, 0, 300, 200), UITableViewStyleGrouped);
    table->setDataSource(&content);
    table->setDelegate(&content);
    EXPECT_EQ(table->numberOfSections(), 0);
    table->layoutIfNeeded();
    EXPECT_THAT(shown(), ElementsAre("a"));
    table->layoutIfNeeded();
    EXPECT_EQ(content.cellsAsked, 1);
}

TEST_F(Table, LaysSectionsOutOneBelowTheOther) {
    show({{"a", "b"}, {"c"}});
    EXPECT_EQ(table->rectForRowAtIndexPath({0, 0}), CGRectMake(0, 50, 300, 40));
    EXPECT_EQ(table->rectForRowAtIndexPath({0, 1}), CGRectMake(0, 90, 300, 40));
    EXPECT_EQ(table->rectForRowAtIndexPath({1, 0}), CGRectMake(0, 50 + 80 + 20 + 50, 300, 40));
    EXPECT_EQ(table->contentSize(), (CGSize{300, 50 + 80 + 20 + 50 + 40 + 20}));
}

TEST_F(Table, GivesNoPlaceToARowThatDoesNotExist) {
    show({{"a"}});
    for (const NSIndexPath path : {NSIndexPath{0, 1}, {0, -1}, {1, 0}, {-1, 0}})
        EXPECT_EQ(table->rectForRowAtIndexPath(path), CGRect{});
}

TEST_F(Table, MakesCellsForTheRowsInViewOnly) {
    show({numbered(10000)});
    EXPECT_THAT(shown(), ElementsAre("0", "1", "2", "3")) << "150 points of rows are in view";
    EXPECT_EQ(content.cellsMade, 4);
}

TEST_F(Table, ReusesTheCellsOfRowsThatHaveLeftTheView) {
    show({numbered(10000)});
    for (double y = 0; y < 390000; y += 130)
        table->setViewport(y, y + 200);
    EXPECT_LE(content.cellsMade, 6);
    EXPECT_EQ(table->visibleCells().size(), 6U);
}

TEST_F(Table, KeepsTheCellsOfRowsThatStayInView) {
    show({numbered(10)});
    const auto cell = table->cellForRowAtIndexPath({0, 3});
    ASSERT_NE(cell, nullptr);
    const int asked = content.cellsAsked;
    table->setViewport(40, 240);
    EXPECT_EQ(table->cellForRowAtIndexPath({0, 3}), cell);
    EXPECT_EQ(content.cellsAsked, asked + 1) << "one row has come into view";
    EXPECT_EQ(table->cellForRowAtIndexPath({0, 9}), nullptr) << "that one is out of view";
}

TEST_F(Table, ShowsRowsThatAreInViewByTheirEdgeOnly) {
    show({numbered(10)});
    table->setViewport(89, 131); // the last point of the first row, the second, the first point of the third
    EXPECT_THAT(shown(), ElementsAre("0", "1", "2"));
    table->setViewport(90, 130);
    EXPECT_THAT(shown(), ElementsAre("1"));
}

TEST_F(Table, ShowsNothingOfAViewportBeyondItsEnds) {
    show({{"a", "b"}});
    table->setViewport(-1000, -500);
    EXPECT_TRUE(table->visibleCells().empty());
    table->setViewport(5000, 6000);
    EXPECT_TRUE(table->visibleCells().empty());
    table->setViewport(-1e300, 1e300);
    EXPECT_THAT(shown(), ElementsAre("a", "b"));
}

TEST_F(Table, TellsItsSourceOfADropAndShowsWhatFollows) {
    show({{"a", "b"}, {"c"}});
    table->dropRow({0, 0}, {1, 1});
    EXPECT_THAT(content.moves, ElementsAre(std::pair(NSIndexPath{0, 0}, NSIndexPath{1, 1})));
    EXPECT_EQ(table->layout().section(0).rowCount, 1);
    table->setViewport(0, 1000);
    EXPECT_THAT(shown(), ElementsAre("b", "c", "a"));
}

TEST_F(Table, MovesTheCellsAlongWithADropAndAsksForNoneAgain) {
    show({{"a", "b", "c", "d"}, {"e", "f", "g"}}, 1000);
    const auto carried = table->cellForRowAtIndexPath({0, 1});
    const int asked = content.cellsAsked;
    table->dropRow({0, 1}, {1, 1});
    EXPECT_EQ(table->cellForRowAtIndexPath({1, 1}), carried);
    EXPECT_THAT(shown(), ElementsAre("a", "c", "d", "e", "b", "f", "g"));
    table->dropRow({1, 1}, {0, 0});
    EXPECT_THAT(shown(), ElementsAre("b", "a", "c", "d", "e", "f", "g"));
    table->dropRow({0, 0}, {0, 3});
    EXPECT_THAT(shown(), ElementsAre("a", "c", "d", "b", "e", "f", "g"));
    table->dropRow({0, 3}, {0, 1});
    EXPECT_THAT(shown(), ElementsAre("a", "b", "c", "d", "e", "f", "g"));
    EXPECT_EQ(content.cellsAsked, asked);
}

TEST_F(Table, MakesTheCellOfTheRowThatComesIntoViewWhenOneIsCarriedOutOfIt) {
    show({numbered(100)});
    const int asked = content.cellsAsked;
    table->dropRow({0, 1}, {0, 80});
    EXPECT_THAT(shown(), ElementsAre("0", "2", "3", "4"));
    EXPECT_EQ(content.cellsAsked, asked + 1);
}

TEST_F(Table, KnowsHowHighTheFirstRowOfAnEmptySectionWouldBe) {
    show({{}, {"a"}});
    EXPECT_EQ(table->layout().section(0).rowHeight, 40);
}

TEST_F(Table, TellsOfADropInTheRowsOwnPlace) {
    show({{"a", "b"}});
    table->dropRow({0, 1}, {0, 1});
    EXPECT_EQ(content.moves.size(), 1U);
}

TEST_F(Table, RefusesToDropAMissingRowOrAtAMissingPlace) {
    show({{"a", "b"}, {"c"}});
    table->dropRow({0, 2}, {0, 0});
    table->dropRow({2, 0}, {0, 0});
    table->dropRow({0, 0}, {0, 2}); // with the row taken out there is one place less
    table->dropRow({0, 0}, {2, 0});
    table->dropRow({0, 0}, {-1, 0});
    EXPECT_TRUE(content.moves.empty());
}

TEST_F(Table, MovesNothingWhileItIsNotEditingOrTheSourceSaysNo) {
    show({{"a", "b"}});
    table->setEditing(false);
    EXPECT_FALSE(table->canMoveRow({0, 0}));
    table->dropRow({0, 0}, {0, 1});
    table->setEditing(true);
    content.movable = false;
    table->dropRow({0, 0}, {0, 1});
    EXPECT_TRUE(content.moves.empty());
}

TEST_F(Table, KeepsMeasuredHeightsWhenItIsReloaded) {
    show({{"a"}});
    content.sections = {{"a", "b"}};
    table->reloadData();
    EXPECT_EQ(table->rectForRowAtIndexPath({0, 1}), CGRectMake(0, 90, 300, 40));
    EXPECT_THAT(shown(), ElementsAre("a", "b"));
}

TEST_F(Table, SeeksTheNextNameThatBeginsSoInAllSectionsAndAroundTheEnd) {
    show({{"Mail", "Maps", "\u00C9clair"}, {}, {"music", "Clock"}});
    const auto sought = [&](const std::string& beginning, NSIndexPath after) {
        table->seekRow(beginning, after);
        return table->scrollRequest().row;
    };
    EXPECT_EQ(sought("m", {0, 0}), (NSIndexPath{0, 1}));
    EXPECT_EQ(sought("M", {0, 1}), (NSIndexPath{2, 0}));
    EXPECT_EQ(sought("m", {2, 0}), (NSIndexPath{0, 0})) << "from the end on to the beginning";
    EXPECT_EQ(sought("ecl", {0, 0}), (NSIndexPath{0, 2}));
    EXPECT_EQ(sought("clock", {2, 1}), (NSIndexPath{2, 1})) << "no other begins so";
    EXPECT_EQ(table->scrollRequest().position, UITableViewScrollPositionNone);
    const auto serial = table->scrollRequest().serial;
    table->seekRow("x", {0, 0});
    table->seekRow("", {0, 0});
    table->seekRow("m", {1, 0});
    EXPECT_EQ(table->scrollRequest().serial, serial) << "there is no such row";
}

TEST_F(Table, SeeksANameWithoutMakingCellsOnTheWay) {
    show({numbered(1000)});
    content.cellsAsked = 0;
    table->seekRow("999", {0, 0});
    EXPECT_EQ(table->scrollRequest().row, (NSIndexPath{0, 999}));
    EXPECT_LT(content.cellsAsked, 20);
}

TEST_F(Table, AsksForSignsAndRoomForThemWhileItIsEditing) {
    show({numbered(3)});
    for (const int row : {0, 1, 2}) {
        EXPECT_EQ(table->editingStyleOfRow({0, row}),
                  row == 1 ? UITableViewCellEditingStyleInsert : UITableViewCellEditingStyleNone);
        EXPECT_EQ(table->isRowIndented({0, row}), row == 2);
    }
    EXPECT_EQ(table->editingStyleOfRow({1, 1}), UITableViewCellEditingStyleNone) << "there is no such row";
    EXPECT_FALSE(table->isRowIndented({1, 2}));
    table->setEditing(false);
    EXPECT_EQ(table->editingStyleOfRow({0, 1}), UITableViewCellEditingStyleNone);
    EXPECT_FALSE(table->isRowIndented({0, 2}));
}

TEST_F(Table, IsEmptyWithoutASource) {
    table = make<UITableView>(CGRectMake(0, 0, 300, 200), UITableViewStylePlain);
    table->layoutIfNeeded();
    EXPECT_EQ(table->numberOfSections(), 0);
    EXPECT_EQ(table->contentSize().height, 0);
    EXPECT_FALSE(table->canMoveRow({0, 0}));
}

TEST_F(Table, ACellHasItsPartsFromTheBeginning) {
    const auto cell = make<UITableViewCell>(UITableViewCellStyleDefault, "theCell");
    EXPECT_EQ(cell->reuseIdentifier(), "theCell");
    EXPECT_EQ(cell->textLabel().text(), "");
    EXPECT_FALSE(cell->detailTextLabel().isHidden());
    EXPECT_EQ(cell->imageView().image(), nullptr);
    EXPECT_EQ(cell->textLabel().superview(), cell.get());
}

} // namespace
