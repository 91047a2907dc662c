#include "platform/ui/UIViewController.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using platform::UIViewController;

TEST(UIViewController, KeepsWhatItPresentsUntilThatIsDismissed) {
    const auto page = std::make_shared<UIViewController>();
    std::weak_ptr<UIViewController> presented;
    int completions = 0;
    {
        const auto sheet = std::make_shared<UIViewController>();
        presented = sheet;
        page->presentViewController(sheet, true, [&] { ++completions; });
    }
    EXPECT_EQ(completions, 1);
    ASSERT_EQ(page->presentedViewController(), presented.lock());
    presented.lock()->dismissViewControllerAnimated(true, [&] { ++completions; });
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_TRUE(presented.expired());
}

TEST(UIViewController, DismissesWhatItPresentsItself) {
    const auto page = std::make_shared<UIViewController>();
    page->presentViewController(std::make_shared<UIViewController>(), false, nullptr);
    page->dismissViewControllerAnimated(false, nullptr);
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST(UIViewController, TellsWhetherWhatItPresentsIsToBeSeenComingAndGoing) {
    const auto page = std::make_shared<UIViewController>();
    for (const auto& [coming, going] : {std::pair(true, false), std::pair(false, true)}) {
        const auto sheet = std::make_shared<UIViewController>();
        page->presentViewController(sheet, coming, nullptr);
        EXPECT_EQ(page->presentsAnimated(), coming);
        page->presentViewController(std::make_shared<UIViewController>(), !coming, nullptr);
        EXPECT_EQ(page->presentsAnimated(), coming) << "nothing came of another one";
        sheet->dismissViewControllerAnimated(going, nullptr);
        EXPECT_EQ(page->presentsAnimated(), going);
    }
}

TEST(UIViewController, PresentsOneAtATimeAndNoneTwice) {
    const auto page = std::make_shared<UIViewController>();
    const auto other = std::make_shared<UIViewController>();
    const auto sheet = std::make_shared<UIViewController>();
    page->presentViewController(sheet, true, nullptr);
    page->presentViewController(std::make_shared<UIViewController>(), true, nullptr);
    EXPECT_EQ(page->presentedViewController(), sheet);
    other->presentViewController(sheet, true, nullptr);
    EXPECT_EQ(other->presentedViewController(), nullptr);
}

TEST(UIViewController, DismissesNothingWhereNothingIsPresented) {
    const auto page = std::make_shared<UIViewController>();
    page->dismissViewControllerAnimated(true, [] { FAIL() << "nothing was dismissed"; });
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST(UIViewController, MayOutliveWhatPresentedIt) {
    const auto sheet = std::make_shared<UIViewController>();
    {
        const auto page = std::make_shared<UIViewController>();
        page->presentViewController(sheet, true, nullptr);
    }
    sheet->dismissViewControllerAnimated(true, [] { FAIL() << "what presented it is gone"; });
    EXPECT_EQ(sheet->presentedViewController(), nullptr);
}

} // namespace
