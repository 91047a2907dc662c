#include "tests/settings/host/NavigationTest.h"

#include "platform/ui/UIButton.h"
#include "platform/ui/UIImageView.h"
#include "platform/ui/UITextView.h"
#include "platform/ui/UITouch.h"

#include <gmock/gmock.h>

namespace {

using namespace tests;
using ::testing::ElementsAre;

/// A page of a platform version whose pages have no navigation item.
class BarePage : public HostedPage {
  public:
    UINavigationItem* navigationItem() override { return nullptr; }
};
PLATFORM_CLASS(BarePage)

/// A colour control in small: a field whose mark follows the finger, with a button below it and a text beside that.
/// Keeps what reaches it.
class FieldView : public UIView {
  public:
    static inline std::vector<std::string> touches; ///< "began 5 6"

    bool initWithFrame(const CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        field_ = make<UIImageView>(CGRectMake(20, 30, 200, 100));
        field_->setImage(std::make_shared<const UIImage>(CGSize{1, 1}, Data{1}, Data{}));
        field_->layer().cornerRadius = 2;
        field_->setClipsToBounds(true);
        mark_ = make<UIView>(CGRectMake(0, 0, 10, 10));
        mark_->setUserInteractionEnabled(false);
        const auto button = make<UIButton>(CGRectMake(20, 200, 50, 40));
        button->setAccessibilityLabel("Press");
        const auto hidden = make<UIButton>(CGRectMake(80, 200, 50, 40));
        hidden->setHidden(true);
        const auto text = make<UITextView>(CGRectMake(150, 200, 100, 60));
        text->setText("Text");
        text->setSelectable(false);
        text->setFont(UIFont::systemFontOfSize(15));
        for (const auto& view : std::initializer_list<std::shared_ptr<UIView>>{field_, mark_, button, hidden, text})
            addSubview(view);
        return true;
    }
    void drawRect(const CGRect& rect) override { UIGraphicsGetCurrentContext()->clipToRect(rect); }

    void touchesBegan(const UITouches& all, const UIEvent& /*event*/) override { take(all, "began"); }
    void touchesMoved(const UITouches& all, const UIEvent& /*event*/) override { take(all, "moved"); }
    void touchesEnded(const UITouches& all, const UIEvent& /*event*/) override { take(all, "ended"); }
    void touchesCancelled(const UITouches& all, const UIEvent& /*event*/) override {
        touches.insert(touches.end(), all.size(), "cancelled");
    }

    [[nodiscard]] std::vector<UIAccessibilityElement> accessibilityElements() const override {
        const CGRect frame = field_->frame();
        return {{"Field", frame, {{"Across", (mark_->center().x - frame.origin.x) / frame.size.width, false, false}}}};
    }

  private:
    void take(const UITouches& all, const std::string& what) {
        for (const auto& touch : all) {
            const CGPoint place = touch->locationInView(*this);
            touches.push_back(what + " " + std::to_string(int(place.x)) + " " + std::to_string(int(place.y)));
            if (CGRectContainsPoint(field_->frame(), place)) mark_->setCenter(place);
        }
    }

    std::shared_ptr<UIImageView> field_;
    std::shared_ptr<UIView> mark_;
};

/// Its view lies within another one, 10 points to the right and 20 down.
class FieldPage : public PSListController {
  public:
    static inline unsigned mask = UIViewAutoresizingNone; ///< of the field's view
    static inline int appearances = 0;

    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        ++appearances;
        const auto ground = make<UIView>(view()->frame());
        const auto field = make<FieldView>(CGRectMake(10, 20, 300, 300));
        field->setAutoresizingMask(mask);
        ground->addSubview(field);
        setView(ground);
    }
};
PLATFORM_CLASS(FieldPage)

using ViewNavigationTest = NavigationTest;

TEST_F(ViewNavigationTest, ShowsAHostedViewInTheContentAreaWithoutItsHiddenViews) {
    navigation.setContentSize({320, 500});
    ASSERT_TRUE(open("HostedPage"));
    EXPECT_TRUE(top().hostsView);
    EXPECT_EQ(top().title, "Fonts");
    EXPECT_TRUE(top().rows.empty());
    ASSERT_TRUE(top().view);
    EXPECT_EQ(top().view->className, "HostedView");
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 320, 500));
    EXPECT_EQ(top().view->layer.backgroundColor, UIColor::whiteColor());
    ASSERT_EQ(top().view->subviews.size(), 1u);
    EXPECT_EQ(top().view->subviews[0].frame, CGRectMake(1, 2, 3, 4));
}

TEST_F(ViewNavigationTest, AnnouncesAPageThatAppearsAgainBecauseItsViewMayBlock) {
    ASSERT_TRUE(open("HostedPage"));
    openRoot();
    const auto above = top().id;
    shown.clear();
    navigation.back(above);
    ASSERT_EQ(shown.size(), 2u);
    ASSERT_TRUE(shown.front().opening);
    EXPECT_EQ(shown.front().opening->className, "HostedPage");
    EXPECT_EQ(shown.front().pages.size(), 1u) << "the page above is gone already";
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(ViewNavigationTest, ShowsAPageWithoutAViewAsEmpty) {
    HostedPage::viewless = true;
    ASSERT_TRUE(open("HostedPage"));
    EXPECT_TRUE(top().hostsView);
    EXPECT_FALSE(top().view);
    navigation.setContentSize({100, 100});
    EXPECT_FALSE(top().view);
}

TEST_F(ViewNavigationTest, TakesTheTitleFromAPageWithoutNavigationItem) {
    ASSERT_TRUE(open("BarePage", "Bare"));
    EXPECT_EQ(top().title, "Bare");
    EXPECT_TRUE(top().view);
}

TEST_F(ViewNavigationTest, FillsThePageWithTheHostedViewAndResizesWhatIsInItByItsMaskAlone) {
    for (const auto& [mask, width] :
         {std::pair<unsigned, double>(UIViewAutoresizingNone, 3), {UIViewAutoresizingFlexibleWidth, 3 + 1024 - 390}}) {
        navigation.setContentSize({390, 760});
        HostedView::mask = mask;
        ASSERT_TRUE(open("HostedPage"));
        navigation.setContentSize({1024, 700});
        EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 1024, 700));
        EXPECT_EQ(top().view->subviews.at(0).frame, CGRectMake(1, 2, width, 4));
    }
}

TEST_F(ViewNavigationTest, ShowsWhatChangesByItselfInAVisibleView) {
    openRoot();
    tap(RowsPage::Hosted);
    const auto inner = navigation.topPage()->view()->subviews().at(0);
    const std::size_t before = shown.size();
    inner->setFrame(CGRectMake(1, 2, 3, 4));
    inner->contentsChanged();
    ASSERT_EQ(shown.size(), before + 1);
    EXPECT_EQ(top().view->subviews.front().frame, CGRectMake(1, 2, 3, 4));
    goBack();
    const std::size_t after = shown.size();
    inner->contentsChanged();
    EXPECT_EQ(shown.size(), after) << "nobody sees it any more";
}

/// A page whose view is touched.
struct FieldNavigationTest : NavigationTest {
    void SetUp() override {
        FieldView::touches.clear();
        FieldPage::mask = UIViewAutoresizingNone;
        FieldPage::appearances = 0;
        ASSERT_TRUE(open("FieldPage", "Color"));
    }
    void touch(std::vector<UITouchRouter::Point> points) { handle(Touched{std::move(points)}); }
    [[nodiscard]] const ViewSnapshot& field() const { return top().view->subviews.at(0); }
};

TEST_F(FieldNavigationTest, ShowsTheLookOfEachVisibleView) {
    EXPECT_EQ(field().className, "FieldView");
    EXPECT_EQ(field().frame, CGRectMake(10, 20, 300, 300));
    ASSERT_EQ(field().subviews.size(), 4U) << "the hidden one is left out";
    const ViewSnapshot& picture = field().subviews.at(0);
    EXPECT_EQ(picture.frame, CGRectMake(20, 30, 200, 100)) << "in the view that it is in";
    EXPECT_EQ(picture.layer.cornerRadius, 2);
    EXPECT_TRUE(picture.layer.masksToBounds);
    EXPECT_TRUE(picture.image);
    EXPECT_FALSE(picture.drawing);
    EXPECT_FALSE(field().image);
    ASSERT_TRUE(field().drawing);
    EXPECT_EQ(field().drawing->size, (CGSize{300, 300}));
    EXPECT_EQ(field().drawing->steps.size(), 1U);
}

TEST_F(FieldNavigationTest, ShowsVisibleElementsAtTheirPlacesOnThePage) {
    ASSERT_EQ(top().elements.size(), 2U);
    EXPECT_EQ(top().elements[0].label, "Field");
    EXPECT_EQ(top().elements[0].frame, CGRectMake(30, 50, 200, 100));
    EXPECT_EQ(top().elements[0].axes.at(0).label, "Across");
    EXPECT_EQ(top().elements[1].label, "Press");
    EXPECT_EQ(top().elements[1].frame, CGRectMake(30, 220, 50, 40));
    EXPECT_TRUE(top().elements[1].axes.empty());
}

TEST_F(FieldNavigationTest, CutsElementsToWhatATouchReachesOnASmallerPageThatTheViewFollows) {
    FieldPage::mask = UIViewAutoresizingFlexibleRightMargin | UIViewAutoresizingFlexibleBottomMargin;
    ASSERT_TRUE(open("FieldPage", "Color"));
    navigation.setContentSize({200, 240});
    ASSERT_EQ(top().elements.size(), 2U);
    EXPECT_EQ(top().elements[0].frame, CGRectMake(30, 50, 200, 100)) << "its quantity is measured along all of it";
    EXPECT_EQ(top().elements[1].frame, CGRectMake(30, 220, 50, 20));
    navigation.setContentSize({50, 230});
    EXPECT_EQ(top().elements.at(1).frame, CGRectMake(30, 220, 20, 10));
    navigation.setContentSize({200, 220});
    ASSERT_EQ(top().elements.size(), 1U);
    EXPECT_EQ(top().elements[0].label, "Field");
    navigation.setContentSize({30, 500});
    EXPECT_TRUE(top().elements.empty());
    navigation.setContentSize({390, 500});
    EXPECT_EQ(top().elements.at(1).frame, CGRectMake(30, 220, 50, 40));
}

TEST_F(FieldNavigationTest, KeepsAViewAsLargeAsItWasMadeUntilItIsMadeAnew) {
    EXPECT_TRUE(top().keepsPlaces);
    navigation.setContentSize({200, 800});
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 310, 800)) << "as wide as its parts reach";
    EXPECT_EQ(top().elements.at(1).frame, CGRectMake(30, 220, 50, 40));
    touch({{0, UITouchPhase::began, {205, 100}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 195 80")) << "beside what a page of that size has";
    navigation.appearAnew(top().id);
    EXPECT_EQ(FieldPage::appearances, 2);
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 200, 800));
}

TEST_F(FieldNavigationTest, AppearsAnewOnceForAnotherSizeAndEndsTouchesBefore) {
    const std::uint64_t id = top().id;
    const std::uint64_t text = top().text->id;
    navigation.appearAnew(id);
    navigation.setContentSize({200, 800});
    navigation.setContentSize({390, 760});
    navigation.appearAnew(id);
    EXPECT_EQ(FieldPage::appearances, 1) << "it has the size that it was made for";
    touch({{0, UITouchPhase::began, {130, 100}}});
    navigation.setContentSize({844, 338});
    navigation.appearAnew(id);
    navigation.appearAnew(id);
    EXPECT_EQ(FieldPage::appearances, 2);
    EXPECT_THAT(FieldView::touches, ElementsAre("began 120 80", "cancelled"));
    EXPECT_EQ(top().id, id);
    EXPECT_EQ(top().text->id, text) << "to the window it is the same text";
}

TEST_F(FieldNavigationTest, DoesNotAppearAnewWhereAllFollowsItsMaskOrThePageIsCovered) {
    const std::uint64_t below = top().id;
    FieldPage::mask = UIViewAutoresizingFlexibleWidth;
    ASSERT_TRUE(open("FieldPage", "Color"));
    EXPECT_FALSE(top().keepsPlaces);
    navigation.setContentSize({844, 338});
    const std::size_t before = shown.size();
    navigation.appearAnew(top().id);
    navigation.appearAnew(below);
    openRoot();
    RowsPage::appearances.clear();
    navigation.setContentSize({390, 760});
    navigation.appearAnew(top().id);
    EXPECT_EQ(FieldPage::appearances, 2);
    EXPECT_TRUE(RowsPage::appearances.empty());
    EXPECT_EQ(shown.size(), before + 2) << "the opening of the page of rows alone";
}

TEST_F(FieldNavigationTest, ShowsTheTextAtItsPlaceOnThePage) {
    ASSERT_TRUE(top().text);
    EXPECT_EQ(top().text->frame, CGRectMake(160, 220, 100, 60));
    EXPECT_EQ(*top().text->text, "Text");
    EXPECT_EQ(top().text->font->pointSize(), 15);
    EXPECT_FALSE(top().text->selectable);
}

TEST_F(FieldNavigationTest, HandsTouchesToTheViewAndShowsWhatComesOfThem) {
    touch({{0, UITouchPhase::began, {130, 100}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 120 80"));
    EXPECT_EQ(field().subviews.at(1).frame, CGRectMake(115, 75, 10, 10));
    EXPECT_EQ(top().elements[0].axes[0].value, 0.5);
    touch({{0, UITouchPhase::moved, {80, 100}}});
    EXPECT_EQ(top().elements[0].axes[0].value, 0.25);
    touch({{0, UITouchPhase::ended, {80, 100}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 120 80", "moved 70 80", "ended 70 80"));
}

TEST_F(FieldNavigationTest, KeepsATextWhenThePageIsTouchedBesideIt) {
    const std::uint64_t id = top().text->id;
    touch({{0, UITouchPhase::began, {130, 100}}});
    EXPECT_EQ(top().text->id, id);
    openRoot();
    goBack();
    EXPECT_NE(top().text->id, id) << "a page that appears again has a view of its own";
}

TEST_F(FieldNavigationTest, CancelsTheTouchesOfAPageThatIsCovered) {
    const std::uint64_t id = top().id;
    touch({{0, UITouchPhase::began, {130, 100}}, {1, UITouchPhase::began, {140, 100}}});
    FieldView::touches.clear();
    openRoot();
    EXPECT_THAT(FieldView::touches, ElementsAre("cancelled", "cancelled"));
    navigation.handle(id, Touched{{{0, UITouchPhase::moved, {131, 100}}}});
    touch({{0, UITouchPhase::began, {131, 100}}}); // on a page of rows
    EXPECT_EQ(FieldView::touches.size(), 2U);
}

TEST_F(FieldNavigationTest, ForgetsTheTouchesOfAPageThatIsGone) {
    openRoot();
    ASSERT_TRUE(open("FieldPage", "Color"));
    const std::uint64_t id = top().id;
    touch({{0, UITouchPhase::began, {130, 100}}});
    FieldView::touches.clear();
    navigation.back(id);
    const std::size_t shownBefore = shown.size();
    navigation.handle(id, Touched{{{0, UITouchPhase::ended, {130, 100}}}});
    EXPECT_TRUE(FieldView::touches.empty());
    EXPECT_EQ(shown.size(), shownBefore);
}

} // namespace
