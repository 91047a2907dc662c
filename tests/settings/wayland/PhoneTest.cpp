#include "tests/settings/wayland/Phone.h"

#include "link/Messages.h"
#include "tests/pages/RecordingTweak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using tests::Phone;
using tests::RecordingTweak;

constexpr QPoint kFirstSwitch(333, 121);
constexpr QPoint kSecondSwitch(333, 304);
constexpr QPointF kAppsLink(60, 164);
constexpr QRect kBar(0, 0, 390, 52);

Value change(const char* key, Value value) {
    return Dictionary{{"key", key}, {"object", std::move(value)}};
}

std::set<std::string> colours(const std::vector<Value>& changes) {
    std::set<std::string> told;
    for (const Value& change : changes)
        told.insert(platform::description(change));
    return told;
}

class PhoneTest : public testing::Test {
  protected:
    PhoneTest() { tweak.setSettings(Dictionary{}); }
    /// All changes, once there are so many.
    std::vector<Value> changes(std::size_t count) {
        Phone::await([&] { return tweak.changes().size() >= count; }, std::to_string(count) + " changes");
        return tweak.changes();
    }

    RecordingTweak& tweak = RecordingTweak::shared();
};

TEST_F(PhoneTest, TurnsSwitchesUnderFingers) {
    Phone phone({});
    phone.tap(kFirstSwitch);
    EXPECT_THAT(changes(1), ElementsAre(change("kTweakEnabled", true)));
    phone.press(kFirstSwitch, 0);
    phone.tap(kSecondSwitch, 1);
    phone.lift(kFirstSwitch, 0);
    EXPECT_THAT(changes(3), IsSupersetOf({change("kSleepDisabledForAppViews", true), change("kTweakEnabled", false)}));
    EXPECT_EQ(phone.close(), 0);
}

TEST_F(PhoneTest, ShowsNothingOfAFingerThatIsGone) {
    Phone phone({});
    const QImage before = phone.picture().copy();
    phone.tap(kFirstSwitch);
    changes(1);
    phone.tap(kFirstSwitch);
    changes(2);
    phone.awaitRest();
    Phone::await([&] { return phone.picture() == before; }, "the same picture");
}

TEST_F(PhoneTest, ScrollsUnderAFingerAndChangesNothing) {
    Phone phone({"--page", "FontViewController"});
    const QImage before = phone.picture().copy();
    phone.drag({195, 700}, {195, 300}, 10);
    phone.awaitRest();
    EXPECT_NE(phone.picture(), before);
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

TEST_F(PhoneTest, SendsEachColourThatAFingerIsDraggedTo) {
    tweak.setSettings(Dictionary{{"kLSBlurColor", Dictionary{{"h", 0.0}, {"s", 0.0}, {"b", 1.0}}}});
    Phone phone({"--page", "ColorPickerController"});
    phone.drag({100, 300}, {280, 480}, 30);
    const std::vector<Value> all = changes(31);
    EXPECT_EQ(all.size(), 31U);
    EXPECT_EQ(colours(all).size(), 31U) << "one of them twice";
}

TEST_F(PhoneTest, SendsEachColourOfADragWhereEachPointHasNinePixels) {
    tweak.setSettings(Dictionary{{"kLSBlurColor", Dictionary{{"h", 0.0}, {"s", 0.0}, {"b", 1.0}}}});
    Phone phone({"--page", "ColorPickerController"}, 3);
    phone.drag({100, 300}, {280, 480}, 30);
    EXPECT_EQ(colours(changes(31)).size(), 31U) << "one of them twice";
}

TEST_F(PhoneTest, SendsTheColoursOfTwoFingersThatAreDraggedAtOnce) {
    tweak.setSettings(Dictionary{{"kLSBlurColor", Dictionary{{"h", 0.0}, {"s", 0.0}, {"b", 1.0}}}});
    Phone phone({"--page", "ColorPickerController"});
    phone.press({100, 300}, 0);
    phone.press({200, 750}, 1);
    for (int i = 1; i <= 10; ++i) {
        phone.move({100.0 + 10 * i, 300.0 + 10 * i}, 0);
        phone.move({200.0 + 10 * i, 750}, 1);
    }
    phone.lift({200, 400}, 0);
    phone.lift({300, 750}, 1);
    EXPECT_EQ(colours(changes(22)).size(), 22U) << "one of them twice";
}

TEST_F(PhoneTest, MovesTwoSlidersUnderTwoFingers) {
    Phone phone({"--page", "AppsController"});
    const QPointF opacity(298, 548);
    const QPointF size(172, 636);
    phone.press(opacity, 0);
    phone.press(size, 1);
    for (int i = 1; i <= 10; ++i) {
        phone.move(opacity - QPointF(10 * i, 0), 0);
        phone.move(size + QPointF(8 * i, 0), 1);
    }
    phone.lift(opacity - QPointF(100, 0), 0);
    phone.lift(size + QPointF(80, 0), 1);
    std::set<std::string> keys;
    for (const Value& change : changes(2))
        keys.insert(std::string(*change.dictionary()->find("key")->text()));
    EXPECT_THAT(keys, ElementsAre("kAppIconOpacity", "kAppIconSize"));
}

TEST_F(PhoneTest, GoesBackUnderAFingerThatComesFromTheEdge) {
    Phone phone({});
    const QImage root = phone.picture().copy();
    phone.tap(kAppsLink);
    Phone::await([&] { return phone.picture().copy(kBar) != root.copy(kBar); }, "the other page");
    phone.awaitRest();
    const QImage page = phone.picture().copy();
    phone.press({3, 400});
    for (int x = 3; x <= 100; x += 10)
        phone.move({double(x), 400});
    phone.awaitRest();
    EXPECT_NE(phone.picture(), page) << "it moves with the finger";
    phone.lift({93, 400});
    phone.awaitRest();
    EXPECT_EQ(phone.picture(), page) << "that was not far";
    phone.drag({3, 400}, {250, 400}, 10);
    Phone::await([&] { return phone.picture() == root; }, "the first page");
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

TEST_F(PhoneTest, MovesARowThatAFingerDrags) {
    tweak.setSettings(Dictionary{{"kAppsEnabled", List{"org.lumora.samples.Phone", "org.lumora.samples.Mail"}}});
    Phone phone({"--page", "AppsListController"});
    phone.drag({348, 119}, {348, 165}, 10);
    EXPECT_THAT(changes(1),
                ElementsAre(change("kAppsEnabled", List{"org.lumora.samples.Mail", "org.lumora.samples.Phone"})));
}

TEST_F(PhoneTest, TakesWhatIsTypedOnTheScreen) {
    Phone phone({"--page", "LSDateViewSettings"});
    EXPECT_FALSE(phone.wantsKeyboard());
    phone.tap({195, 617});
    Phone::await([&] { return phone.wantsKeyboard(); }, "the wish for a keyboard");
    phone.write("Hé");
    phone.write("\r");
    EXPECT_THAT(changes(1), ElementsAre(change("kLSDateSubtitle", "Hé")));
}

TEST_F(PhoneTest, ShowsWhatIsTypedIntoAboveAKeyboardThatCoversTheWindow) {
    Phone phone({"--page", "LSDateViewSettings"});
    constexpr QRect kHint(40, 600, 120, 34); // beside the caret
    const QImage hint = phone.picture().copy(kHint);
    const auto showsHintAt = [&](int y) { return phone.picture().copy({{kHint.x(), y}, kHint.size()}) == hint; };
    phone.tap({195, 617});
    Phone::await([&] { return phone.wantsKeyboard(); }, "the wish for a keyboard");
    constexpr int kTop = 520;
    phone.cover({0, kTop, 390, 844 - kTop});
    const auto showsHintAbove = [&] {
        int y = 0;
        while (y + kHint.height() <= kTop && !showsHintAt(y))
            ++y;
        return y + kHint.height() <= kTop;
    };
    Phone::await(showsHintAbove, "the field above the keyboard");
    phone.cover({});
    Phone::await([&] { return showsHintAt(kHint.y()); }, "the field at its former place");
}

TEST_F(PhoneTest, IsTheSameAfterItWasTurnedAndTurnedBack) {
    Phone phone({"--page", "LSDateViewSettings"});
    const QImage before = phone.picture().copy();
    phone.turn({844, 390});
    phone.awaitRest();
    phone.turn({390, 844});
    phone.awaitRest();
    EXPECT_EQ(phone.picture(), before);
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

TEST_F(PhoneTest, TakesFingersInPointsWhereEachHasNinePixels) {
    Phone phone({}, 3);
    EXPECT_EQ(phone.picture().size(), QSize(1170, 2532));
    phone.tap(kFirstSwitch);
    EXPECT_THAT(changes(1), ElementsAre(change("kTweakEnabled", true)));
}

} // namespace
