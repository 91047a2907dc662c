#include "platform/preferences/PSListItemsController.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Chooser final : NSObject {
    Value stored;
    int writes = 0;
    Value get(PSSpecifier& /*row*/) { return stored; }
    void set(const Value& value, PSSpecifier& /*row*/) {
        stored = value;
        ++writes;
    }
};

struct OptionList : testing::Test {
    Chooser target;
    std::shared_ptr<PSListItemsController> page = make<PSListItemsController>();

    void open(std::vector<Value> values, std::vector<std::string> titles) {
        auto row = PSSpecifier::preferenceSpecifierNamed("Sleep After", &target, selector(&Chooser::set),
                                                         selector(&Chooser::get), "PSListItemsController",
                                                         PSLinkListCell, false);
        row->setValues(std::move(values), titles, titles);
        page->setSpecifier(row);
    }
};

TEST_F(OptionList, ShowsARowForEachTitle) {
    open({5, 10, 3600}, {"5 Seconds", "10 Seconds", "Never"});
    const auto rows = page->specifiers();
    ASSERT_EQ(rows->size(), 4U);
    EXPECT_EQ(rows->at(0)->cellType(), PSGroupCell);
    EXPECT_EQ(rows->at(3)->name(), "Never");
    EXPECT_EQ(rows->at(3)->cellType(), PSListItemCell);
    EXPECT_EQ(page->specifiers(), rows) << "built once";
}

TEST_F(OptionList, MarksTheStoredValueForAnyKindOfNumber) {
    open({5, 10, 3600}, {"5 Seconds", "10 Seconds", "Never"});
    EXPECT_EQ(page->selectedIndex(), -1) << "nothing is stored";
    target.stored = 10;
    EXPECT_EQ(page->selectedIndex(), 1);
    target.stored = 3600.0;
    EXPECT_EQ(page->selectedIndex(), 2);
    target.stored = true;
    EXPECT_EQ(page->selectedIndex(), -1) << "a boolean is no number";
    target.stored = "10";
    EXPECT_EQ(page->selectedIndex(), -1) << "a text is no number";
}

TEST_F(OptionList, StoresTheValueAtTheTappedTitlesPosition) {
    open({5, 10, 3600}, {"5 Seconds", "10 Seconds", "Never"});
    page->specifiers()->at(3)->performAction();
    EXPECT_EQ(target.stored, Value(3600));
    EXPECT_EQ(target.writes, 1);
}

TEST_F(OptionList, IgnoresPositionsThatAreNoOption) {
    open({5, 10}, {"5 Seconds", "10 Seconds"});
    page->select(-1);
    page->select(2);
    EXPECT_EQ(target.writes, 0);
}

TEST_F(OptionList, OfUnequalListsShowsOnlyWhatHasATitleAndAValue) {
    open({5}, {"5 Seconds", "10 Seconds"});
    EXPECT_EQ(page->specifiers()->size(), 2U);
    page->select(1);
    EXPECT_EQ(target.writes, 0);
}

TEST_F(OptionList, WithoutAnOpeningRowIsEmpty) {
    EXPECT_EQ(page->specifiers(), nullptr);
    EXPECT_EQ(page->selectedIndex(), -1);
    page->select(0);
}

} // namespace
