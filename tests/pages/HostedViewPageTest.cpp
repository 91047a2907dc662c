#include "pages/base/HostedViewPage.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using lumora::HostedViewPage;
using platform::CGRect;
using platform::CGRectMake;
using platform::make;
using platform::UIView;

struct Hosting : HostedViewPage {
    Hosting() : HostedViewPage("Fonts") {}
    std::vector<CGRect> frames; ///< of each view that was made
    bool yieldsNothing = false;
    bool hasNavigationItem = true;

    platform::UINavigationItem* navigationItem() override {
        return hasNavigationItem ? HostedViewPage::navigationItem() : nullptr;
    }

  protected:
    std::shared_ptr<UIView> makeView(const CGRect& frame) override {
        frames.push_back(frame);
        return yieldsNothing ? nullptr : make<UIView>(frame);
    }
};

TEST(HostedViewPage, AnswersItsFixedTitleAsBothTitles) {
    const auto page = make<Hosting>();
    page->setTitle("the opening row's");
    EXPECT_EQ(page->title(), "Fonts");
    EXPECT_EQ(page->navigationTitle(), "Fonts");
}

TEST(HostedViewPage, GivesTheNavigationItemItsTitleWhenItAppears) {
    const auto page = make<Hosting>();
    EXPECT_EQ(page->navigationItem()->title, "");
    page->viewWillAppear(true);
    EXPECT_EQ(page->navigationItem()->title, "Fonts");
}

TEST(HostedViewPage, IsShownWithoutANavigationItem) {
    const auto page = make<Hosting>();
    page->hasNavigationItem = false;
    page->viewWillAppear(false);
    EXPECT_TRUE(page->hostsView());
    EXPECT_NE(page->view(), nullptr);
}

TEST(HostedViewPage, MakesAFreshViewInThePagesFrameOnEachAppearance) {
    const auto page = make<Hosting>();
    page->view()->setFrame(CGRectMake(0, 0, 390, 760));
    page->viewWillAppear(true);
    const std::weak_ptr<UIView> first = page->view();
    page->view()->setFrame(CGRectMake(0, 0, 320, 500));
    page->viewWillAppear(true);
    EXPECT_TRUE(first.expired()) << "the view before is released";
    EXPECT_EQ(page->frames, (std::vector{CGRectMake(0, 0, 390, 760), CGRectMake(0, 0, 320, 500)}));
}

TEST(HostedViewPage, ShowsNothingWhenNoViewIsMade) {
    const auto page = make<Hosting>();
    page->yieldsNothing = true;
    page->viewWillAppear(true);
    EXPECT_TRUE(page->hostsView());
    EXPECT_EQ(page->view(), nullptr);
    page->viewWillAppear(true);
    EXPECT_EQ(page->frames.back(), CGRect{}) << "a page without a view has no frame to give";
}

TEST(HostedViewPage, HasNoRows) {
    const auto page = make<Hosting>();
    EXPECT_EQ(page->specifiers(), nullptr);
}

} // namespace
