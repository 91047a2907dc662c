#include "platform/ui/UIView.h"

#include "TouchedView.h"

#include "platform/ui/UIImageView.h"

#include <gtest/gtest.h>

#include <variant>

namespace {

using namespace platform;

/// Notes what happens to it.
struct Watched : UIView {
    std::vector<UIView*> parents; ///< that it was about to enter
    bool wasThereAlready = false;
    int layouts = 0;
    int drawings = 0;

    void willMoveToSuperview(UIView* newSuperview) override {
        parents.push_back(newSuperview);
        wasThereAlready = superview() == newSuperview;
    }
    void layoutSubviews() override { ++layouts; }
    void drawRect(const CGRect& rect) override {
        ++drawings;
        UIGraphicsGetCurrentContext()->clipToRect(rect);
    }
};

TEST(UIView, HoldsItsOwnSubviewsFromBackToFront) {
    const auto parent = make<UIView>(CGRectMake(0, 0, 100, 100));
    const auto other = make<UIView>(CGRectMake(0, 0, 100, 100));
    const auto first = make<UIView>(CGRectMake(0, 0, 10, 10));
    const auto second = make<UIView>(CGRectMake(0, 0, 10, 10));
    parent->addSubview(first);
    parent->addSubview(second);
    parent->addSubview(first); // to the front
    EXPECT_EQ(parent->subviews(), (std::vector{second, first}));
    other->addSubview(first);
    EXPECT_EQ(parent->subviews(), std::vector{second});
    EXPECT_EQ(first->superview(), other.get());
    first->removeFromSuperview();
    EXPECT_EQ(first->superview(), nullptr);
    EXPECT_TRUE(other->subviews().empty());
}

TEST(UIView, LeavesItsSubviewsWithoutAParentWhenItGoes) {
    const auto child = make<UIView>(CGRectMake(0, 0, 10, 10));
    make<UIView>(CGRectMake(0, 0, 100, 100))->addSubview(child);
    EXPECT_EQ(child->superview(), nullptr);
}

/// The frame of a view in another one that has grown.
CGRect afterGrowthBy(double width, double height, unsigned mask) {
    const auto parent = make<UIView>(CGRectMake(0, 0, 300, 400));
    const auto child = make<UIView>(CGRectMake(20, 20, 260, 310));
    child->setAutoresizingMask(mask);
    parent->addSubview(child);
    parent->setFrame(CGRectMake(0, 0, 300 + width, 400 + height));
    return child->frame();
}

TEST(Autoresizing, FollowsTheMask) {
    EXPECT_EQ(afterGrowthBy(50, 60, 0), CGRectMake(20, 20, 260, 310)) << "without one the frame stays";
    EXPECT_EQ(afterGrowthBy(50, 60, 18), CGRectMake(20, 20, 310, 370)) << "flexible width and height take all";
    EXPECT_EQ(afterGrowthBy(50, 60, 10), CGRectMake(20, 80, 310, 310)) << "flexible width; it stays at the bottom";
}

TEST(Autoresizing, SharesTheGrowthInProportionToTheFlexibleParts) {
    const unsigned leftAndWidth = UIViewAutoresizingFlexibleLeftMargin | UIViewAutoresizingFlexibleWidth;
    EXPECT_EQ(afterGrowthBy(28, 0, leftAndWidth), CGRectMake(22, 20, 286, 310));
}

TEST(Autoresizing, ShrinksNoFurtherThanNothing) {
    EXPECT_EQ(afterGrowthBy(-290, 0, 2).size.width, 0);
}

TEST(Autoresizing, LeavesTheCentreOfAViewWithoutAMaskExactlyWhereItIs) {
    const auto parent = make<UIView>(CGRectMake(0, 0, 300, 400));
    const auto child = make<UIView>(CGRectMake(20, 20, 260, 310));
    child->setCenter({20.1, 0.3});
    parent->addSubview(child);
    parent->setFrame(CGRectMake(0, 0, 301, 401));
    EXPECT_EQ(child->center(), (CGPoint{20.1, 0.3}));
}

TEST(UIViewInSpace, HasItsSizeAtTheOriginAsItsOwnSpace) {
    const auto view = make<UIView>(CGRectMake(10, 20, 30, 50));
    EXPECT_EQ(view->bounds(), CGRectMake(0, 0, 30, 50));
    EXPECT_EQ(view->center(), (CGPoint{25, 45}));
    EXPECT_EQ(make<UIView>()->frame(), CGRect{});
}

TEST(UIViewInSpace, KeepsItsSizeAndExactlyTheCentreThatItIsGiven) {
    const auto view = make<UIView>(CGRectMake(0, 0, 5, 40));
    for (const CGPoint center : {CGPoint{0.1, 0.2}, CGPoint{1e9 + 0.1, -1 / 3.0}, CGPoint{20.000000000000004, 75}}) {
        view->setCenter(center);
        EXPECT_EQ(view->center(), center);
        EXPECT_EQ(view->frame(), CGRectMake(center.x - 2.5, center.y - 20, 5, 40));
    }
}

TEST(UIViewLook, BeginsAsNothingToBeSeen) {
    const auto view = make<UIView>(CGRectMake(0, 0, 10, 10));
    const CALayer& layer = view->layer();
    EXPECT_EQ(layer.backgroundColor, nullptr);
    EXPECT_EQ(layer.cornerRadius, 0);
    EXPECT_EQ(layer.borderWidth, 0);
    EXPECT_EQ(layer.borderColor, UIColor::blackColor());
    EXPECT_FALSE(layer.masksToBounds);
    EXPECT_EQ(layer.shadowColor, UIColor::blackColor());
    EXPECT_EQ(layer.shadowOffset, (CGSize{0, -3}));
    EXPECT_EQ(layer.shadowRadius, 3);
    EXPECT_EQ(layer.shadowOpacity, 0);
    EXPECT_EQ(view->tintColor(), nullptr);
    EXPECT_FALSE(view->isHidden());
}

TEST(UIViewLook, IsItsLayers) {
    const auto view = make<UIView>(CGRectMake(0, 0, 10, 10));
    view->setBackgroundColor(UIColor::whiteColor());
    view->setClipsToBounds(true);
    EXPECT_EQ(view->layer().backgroundColor, UIColor::whiteColor());
    EXPECT_TRUE(view->layer().masksToBounds);
    view->layer().backgroundColor = UIColor::blackColor();
    EXPECT_EQ(view->backgroundColor(), UIColor::blackColor());
}

struct UIViewOrder : testing::Test {
    std::shared_ptr<UIView> parent = make<UIView>(CGRectMake(0, 0, 100, 100));
    std::shared_ptr<UIView> first = make<UIView>(CGRectMake(0, 0, 10, 10));
    std::shared_ptr<UIView> second = make<UIView>(CGRectMake(0, 0, 10, 10));
    std::shared_ptr<UIView> third = make<UIView>(CGRectMake(0, 0, 10, 10));
    UIViewOrder() {
        parent->addSubview(first);
        parent->addSubview(second);
    }
};

TEST_F(UIViewOrder, PutsAViewDirectlyAboveAnother) {
    parent->insertSubview(third, *first);
    EXPECT_EQ(parent->subviews(), (std::vector{first, third, second}));
    parent->insertSubview(third, *second); // is there already
    EXPECT_EQ(parent->subviews(), (std::vector{first, second, third}));
    parent->insertSubview(first, *second);
    EXPECT_EQ(parent->subviews(), (std::vector{second, first, third}));
}

TEST_F(UIViewOrder, PutsAViewInFrontOfAllWhenTheOtherIsNotThere) {
    parent->insertSubview(third, *make<UIView>());
    EXPECT_EQ(parent->subviews(), (std::vector{first, second, third}));
}

TEST_F(UIViewOrder, StaysWhereAViewIsPutAboveItself) {
    parent->insertSubview(first, *first);
    EXPECT_EQ(parent->subviews(), (std::vector{first, second}));
}

TEST_F(UIViewOrder, TellsAViewOfItsNextParentBeforeItIsThere) {
    const auto view = make<Watched>();
    parent->addSubview(view);
    EXPECT_EQ(view->parents, std::vector{parent.get()});
    EXPECT_FALSE(view->wasThereAlready);
    parent->insertSubview(view, *first);
    EXPECT_EQ(view->parents.size(), 1U) << "a move among its siblings is none";
    third->addSubview(view);
    EXPECT_EQ(view->parents.back(), third.get());
    view->removeFromSuperview();
    EXPECT_EQ(view->parents.back(), nullptr);
    EXPECT_FALSE(view->wasThereAlready);
    view->removeFromSuperview();
    EXPECT_EQ(view->parents.size(), 3U) << "a view without a parent stays that";
}

struct UIViewDue : testing::Test {
    std::shared_ptr<Watched> view = make<Watched>(CGRectMake(0, 0, 100, 50));
    int layouts() const {
        view->layoutIfNeeded();
        return view->layouts;
    }
    int drawings() const {
        view->displayIfNeeded();
        return view->drawings;
    }
};

TEST_F(UIViewDue, LaysItselfOutAtFirstAndThenWhenItsSizeOrItsSubviewsChange) {
    EXPECT_EQ(layouts(), 1);
    EXPECT_EQ(layouts(), 1);
    view->setFrame(CGRectMake(7, 8, 100, 50));
    view->setCenter({0, 0});
    EXPECT_EQ(layouts(), 1) << "only moved";
    view->setFrame(CGRectMake(7, 8, 101, 50));
    EXPECT_EQ(layouts(), 2);
    view->addSubview(make<UIView>());
    EXPECT_EQ(layouts(), 3);
    view->insertSubview(make<UIView>(), *view->subviews().front());
    EXPECT_EQ(layouts(), 4);
    view->setNeedsLayout();
    EXPECT_EQ(layouts(), 5);
}

TEST_F(UIViewDue, LaysOutWhatIsInItAsFarAsThatIsDue) {
    const auto inner = make<Watched>(CGRectMake(0, 0, 10, 10));
    view->addSubview(inner);
    view->layoutIfNeeded();
    inner->setFrame(CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(layouts(), 1);
    EXPECT_EQ(inner->layouts, 2);
}

TEST_F(UIViewDue, DrawsItselfAtFirstAndThenOnlyWhenAsked) {
    EXPECT_EQ(drawings(), 1);
    const CGDrawingRef drawn = view->drawing();
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(drawn->size, (CGSize{100, 50}));
    EXPECT_EQ(std::get<CGDrawing::Clip>(drawn->steps.at(0)).rect, CGRectMake(0, 0, 100, 50));
    view->setFrame(CGRectMake(0, 0, 300, 70));
    EXPECT_EQ(drawings(), 1);
    EXPECT_EQ(view->drawing(), drawn) << "it is stretched where it is shown";
    view->setNeedsDisplay();
    EXPECT_EQ(drawings(), 2);
    EXPECT_EQ(view->drawing()->size, (CGSize{300, 70}));
}

TEST_F(UIViewDue, DrawsOnceItHasAnySize) {
    view->setFrame(CGRectMake(0, 0, 100, 0));
    EXPECT_EQ(drawings(), 0);
    view->setFrame(CGRectMake(0, 0, 100, 1));
    EXPECT_EQ(drawings(), 1);
}

TEST_F(UIViewDue, HasNoDrawingWhenItDrawsNothing) {
    const auto plain = make<UIView>(CGRectMake(0, 0, 10, 10));
    view->addSubview(plain);
    view->displayIfNeeded();
    EXPECT_EQ(plain->drawing(), nullptr);
}

TEST_F(UIViewDue, HasAContextOnlyWhileItDraws) {
    EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
    view->displayIfNeeded();
    EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
}

struct UIViewHit : testing::Test {
    std::shared_ptr<UIView> page = make<UIView>(CGRectMake(0, 0, 100, 100));
    std::shared_ptr<UIView> back = make<UIView>(CGRectMake(10, 10, 50, 50));
    std::shared_ptr<UIView> front = make<UIView>(CGRectMake(40, 40, 50, 50));
    UIViewHit() {
        page->addSubview(back);
        page->addSubview(front);
    }
};

TEST_F(UIViewHit, IsTheFrontmostUnderThePoint) {
    EXPECT_EQ(hitTest(page, {5, 5}), page);
    EXPECT_EQ(hitTest(page, {10, 10}), back);
    EXPECT_EQ(hitTest(page, {40, 40}), front);
    EXPECT_EQ(hitTest(page, {90, 89}), page) << "right and bottom edges are outside";
    EXPECT_EQ(hitTest(page, {100, 50}), nullptr);
}

TEST_F(UIViewHit, IsTheInnermost) {
    const auto inner = make<UIView>(CGRectMake(5, 5, 10, 10));
    front->addSubview(inner);
    EXPECT_EQ(hitTest(page, {45, 45}), inner);
    EXPECT_EQ(hitTest(page, {44, 45}), front);
}

TEST_F(UIViewHit, GoesThroughHiddenOnesAndThoseThatTakeNoTouches) {
    front->setHidden(true);
    EXPECT_EQ(hitTest(page, {45, 45}), back);
    back->addSubview(make<UIView>(CGRectMake(0, 0, 50, 50)));
    back->setUserInteractionEnabled(false);
    EXPECT_EQ(hitTest(page, {45, 45}), page) << "with all that is in them";
    page->addSubview(make<UIImageView>(CGRectMake(0, 0, 100, 100)));
    EXPECT_EQ(hitTest(page, {45, 45}), page) << "a picture takes none";
    page->setUserInteractionEnabled(false);
    EXPECT_EQ(hitTest(page, {45, 45}), nullptr);
}

TEST_F(UIViewHit, LeavesOutWhatStandsOutOfItsParent) {
    back->addSubview(make<UIView>(CGRectMake(-10, -10, 20, 20)));
    EXPECT_EQ(hitTest(page, {5, 5}), page);
    EXPECT_EQ(hitTest(page, {15, 15}), back->subviews().front());
}

TEST(UIViewTouches, GoToTheParentThatTakesThem) {
    const auto parent = make<TouchedView>();
    const auto between = make<UIView>();
    const auto child = make<UIView>();
    parent->addSubview(between);
    between->addSubview(child);
    const UITouches touches{std::make_shared<UITouch>(CGPoint{}, UITouchPhase::began)};
    child->touchesBegan(touches, {});
    child->touchesMoved(touches, {});
    child->touchesEnded(touches, {});
    child->touchesCancelled(touches, {});
    std::vector<std::string> operations;
    for (const Call& call : parent->calls)
        operations.push_back(call.operation);
    EXPECT_EQ(operations, (std::vector<std::string>{"began", "moved", "ended", "cancelled"}));
    make<UIView>()->touchesBegan(touches, {}); // and end where there is no parent
}

} // namespace
