#include "platform/preferences/PSListController.h"
#include "platform/ui/UIView.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(PSListController, HasNoRowsOfItsOwn) {
    EXPECT_EQ(make<PSListController>()->specifiers(), nullptr);
}

TEST(PSListController, CallsItselfWhatTheOpeningRowIsCalled) {
    const auto page = make<PSListController>();
    page->setTitle("Apps");
    EXPECT_EQ(page->title(), "Apps");
    EXPECT_EQ(page->navigationTitle(), "Apps");
}

TEST(PSListController, HasAContentViewOfItsOwnUntilAnotherReplacesIt) {
    const auto page = make<PSListController>();
    ASSERT_NE(page->view(), nullptr);
    EXPECT_FALSE(page->hostsView());
    page->view()->setFrame(CGRectMake(0, 0, 390, 700));

    const auto hosted = make<UIView>(page->view()->frame());
    const std::weak_ptr<UIView> previous = page->view();
    page->setView(hosted);
    EXPECT_EQ(page->view(), hosted);
    EXPECT_TRUE(page->hostsView());
    EXPECT_TRUE(previous.expired()) << "the previous content view is released when it is replaced";
    EXPECT_EQ(hosted->frame(), CGRectMake(0, 0, 390, 700));
}

TEST(PSListController, TakesANullViewAsItsContent) {
    const auto page = make<PSListController>();
    page->setView(nullptr);
    EXPECT_EQ(page->view(), nullptr);
    EXPECT_TRUE(page->hostsView());
}

} // namespace
