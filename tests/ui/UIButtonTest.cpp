#include "platform/ui/UIButton.h"

#include "TouchedView.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Target : TouchedView {
    std::vector<int> pressed; ///< tags

    void press(UIButton& sender) { pressed.push_back(sender.tag()); }
};

struct Buttons : testing::Test {
    using enum UITouchPhase;
    std::shared_ptr<Target> target = make<Target>(CGRectMake(0, 0, 100, 100));
    std::shared_ptr<UIButton> button = make<UIButton>(CGRectMake(10, 10, 20, 20));
    UITouchRouter router;
    Buttons() {
        button->setTag(5);
        button->addTarget(*target, &Target::press, UIControlEventTouchUpInside);
        target->addSubview(button);
    }
    void touch(UITouchPhase phase, CGPoint point) { router.send(target, {{1, phase, point}}); }
    void tap() {
        touch(began, {15, 15});
        touch(ended, {15, 15});
    }
};

TEST_F(Buttons, ArePressedByATouchThatEndsInside) {
    touch(began, {10, 10});
    touch(moved, {90, 90});
    EXPECT_TRUE(target->pressed.empty());
    touch(ended, {29, 29});
    EXPECT_EQ(target->pressed, std::vector{5});
}

TEST_F(Buttons, AreNotPressedByATouchThatEndsOutside) {
    for (const CGPoint end : {CGPoint{30, 15}, CGPoint{15, 30}, CGPoint{9, 15}, CGPoint{15, 9}}) {
        touch(began, {15, 15});
        touch(ended, end);
    }
    EXPECT_TRUE(target->pressed.empty());
}

TEST_F(Buttons, AreNotPressedByATouchThatIsCancelledOrBeganElsewhere) {
    touch(began, {15, 15});
    touch(cancelled, {15, 15});
    touch(began, {15, 15});
    router.cancel();
    EXPECT_TRUE(target->calls.empty()) << "touches of a button are its own";
    touch(began, {50, 50});
    touch(ended, {15, 15});
    EXPECT_TRUE(target->pressed.empty());
    EXPECT_EQ(target->calls.size(), 2U);
}

TEST_F(Buttons, TellOnlyTheTargetsOfTheEvent) {
    const auto other = make<Target>();
    button->addTarget(*other, &Target::press, 1);
    button->addTarget(*target, &Target::press, UIControlEventTouchUpInside | 1);
    tap();
    EXPECT_EQ(target->pressed, (std::vector{5, 5}));
    EXPECT_TRUE(other->pressed.empty());
}

TEST_F(Buttons, TellATargetThatIsAddedMeanwhileFromTheNextTimeOn) {
    struct Adder : Target {
        std::vector<std::shared_ptr<Target>> added;
        void add(UIButton& sender) {
            for (int i = 0; i < 100; ++i) { // more than the list of targets has room for where it is
                added.push_back(make<Target>());
                sender.addTarget(*added.back(), &Target::press, UIControlEventTouchUpInside);
            }
        }
    };
    const auto adder = make<Adder>();
    button->addTarget(*adder, &Adder::add, UIControlEventTouchUpInside);
    button->addTarget(*target, &Target::press, UIControlEventTouchUpInside);
    tap();
    ASSERT_EQ(adder->added.size(), 100U);
    EXPECT_EQ(target->pressed, (std::vector{5, 5})) << "those after it are told, too";
    for (const auto& added : adder->added)
        EXPECT_TRUE(added->pressed.empty());
    tap();
    EXPECT_EQ(adder->added.front()->pressed, std::vector{5});
}

TEST_F(Buttons, AreCalledByTheirLabelsByAssistiveTools) {
    button->setAccessibilityLabel("Cyan");
    EXPECT_EQ(button->accessibilityElements(),
              (std::vector{UIAccessibilityElement{"Cyan", CGRectMake(0, 0, 20, 20), {}}}));
}

} // namespace
