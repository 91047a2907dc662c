// The face as it is used: by keys, and by fingers that do what nobody expects.

#include "tests/lockscreen/face/Tried.h"
#include "tests/pixels/Pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <functional>
#include <memory>
#include <sstream>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

/// A face in a window that has the keyboard.
class Seen : public Tried {
  public:
    explicit Seen(Dictionary chosen = enabled(), const std::string& passcode = "1234", bool animated = false)
        : Tried(std::move(chosen), passcode) {
        engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
        window.resize(390, 844);
        const PictureFolder folder;
        (void)backdrop.make({folder.save(flat({390, 844}, qRgb(40, 60, 90))), window.size(), 1});
        QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/Face.qml")));
        item.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
            {{"face", QVariant::fromValue(&face)}, {"animated", animated}, {"width", 390}, {"height", 844}})));
        if (!item) throw std::runtime_error(component.errorString().toStdString());
        item->setParentItem(window.contentItem());
        window.show();
        window.requestActivate();
        if (!QTest::qWaitForWindowActive(&window)) throw std::runtime_error("the window has no keyboard");
        item->forceActiveFocus();
    }

    /// By words: "Right Down Menu 1 2".
    Seen& press(const std::string& keys) {
        static const std::map<std::string, int> known{
            {"Left", Qt::Key_Left}, {"Right", Qt::Key_Right},   {"Up", Qt::Key_Up},
            {"Down", Qt::Key_Down}, {"Enter", Qt::Key_Return},  {"Shift+Enter", Qt::Key_Return},
            {"Menu", Qt::Key_Menu}, {"Escape", Qt::Key_Escape}, {"BackSpace", Qt::Key_Backspace},
            {"Home", Qt::Key_Home}, {"Space", Qt::Key_Space},   {"S", Qt::Key_S}};
        std::istringstream words(keys);
        for (std::string word; words >> word;) {
            const auto found = known.find(word);
            const int key = found == known.end() ? Qt::Key_0 + (word[0] - '0') : found->second;
            QTest::keyClick(&window, static_cast<Qt::Key>(key),
                            word.starts_with("Shift") ? Qt::ShiftModifier : Qt::NoModifier);
        }
        return *this;
    }
    QImage picture() { return window.grabWindow(); }
    /// Parts of the face that are of that type and shown.
    [[nodiscard]] std::vector<QQuickItem*> shown(const char* type) const {
        std::vector<QQuickItem*> found;
        const std::function<void(QQuickItem*)> look = [&](QQuickItem* at) {
            if (!at->isVisible()) return;
            if (QByteArray(at->metaObject()->className()).startsWith(type)) found.push_back(at);
            for (QQuickItem* child : at->childItems())
                look(child);
        };
        look(item.get());
        return found;
    }

  private:
    QQmlEngine engine_;

  public:
    QQuickWindow window;
    std::unique_ptr<QQuickItem> item;
};

/// What assistive tools find in a role.
std::map<QString, QAccessibleInterface*> told(const Seen& seen, QAccessible::Role role) {
    std::map<QString, QAccessibleInterface*> found;
    for (QQuickItem* item : seen.shown(""))
        if (QAccessibleInterface* one = QAccessible::queryAccessibleInterface(item); one && one->role() == role)
            found.emplace(one->text(QAccessible::Name), one);
    return found;
}

std::vector<Dictionary::Entry> automatic(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kAutoUnlockEnabled, true);
    others.emplace_back(kAutoUnlockPasscode, "1234");
    return others;
}

struct OnAnIcon {
    bool switched;
    bool forViewsOnly;
    const char* tapped[2]; ///< what comes of it with Phone, and with Weather, which has an App View
    const char* held[2];
};
struct Unlocking {
    const char* what;
    std::vector<Dictionary::Entry> settings;
    const char* passcode;
    const char* keys;
    std::vector<std::string> outcomes;
};

} // namespace

TEST(FaceByKeys, DoesAllThatCanBeDoneWithAnIcon) {
    constexpr const char* opensPhone = "opens org.lumora.samples.Phone";
    constexpr const char* opensWeather = "opens org.lumora.samples.Weather";
    constexpr const char* shows = "shows org.lumora.plugins.weather";
    for (const OnAnIcon& row : {OnAnIcon{false, false, {opensPhone, opensWeather}, {"", shows}},
                                OnAnIcon{true, false, {"", shows}, {opensPhone, opensWeather}},
                                OnAnIcon{false, true, {opensPhone, shows}, {"", opensWeather}},
                                OnAnIcon{true, true, {opensPhone, shows}, {"", opensWeather}}})
        for (const char* key : {"Enter", "Shift+Enter", "Menu"})
            for (const int icon : {0, 1}) {
                SCOPED_TRACE(std::string(key) + " " + std::to_string(icon));
                Seen seen(enabled({{kSwitchTapAndLongHold, row.switched}, {kLongHoldForPluginApps, row.forViewsOnly}}),
                          "");
                seen.press("Right Down").press(icon == 0 ? "" : "Right").outcomes();
                const std::string wanted = (key == std::string("Enter") ? row.tapped : row.held)[icon];
                if (wanted.empty())
                    EXPECT_THAT(seen.press(key).outcomes(), IsEmpty());
                else
                    EXPECT_THAT(seen.press(key).outcomes(), ElementsAre(wanted));
            }
}

TEST(FaceByKeys, UnlocksInAllWays) {
    const std::string opens = "opens org.lumora.samples.Phone";
    const std::string opensMessages = "opens org.lumora.samples.Messages";
    const std::string alone = "unlocked for org.lumora.samples.Phone alone";
    const std::string aloneMessages = "unlocked for org.lumora.samples.Messages alone";
    const std::string asks = "asks for the passcode";
    const std::string unlocked = "unlocked";
    const std::string homeScreen = "home screen";
    const std::string lockScreen = "lock screen, locked";
    constexpr const char* icon = "Right Down Enter Home";
    constexpr const char* iconAndCode = "Right Down Enter 1 2 4 BackSpace 3 4 Home";
    constexpr const char* notice = "Down Enter Home";
    const std::vector<Unlocking> cases{
        {"no passcode", {}, "", icon, {"stage A", opens, homeScreen}},
        {"fully",
         automatic({{kFullAutoUnlockEnabled, true}, {kAutoUnlockPasscodeConfirm, "1234"}}),
         "1234",
         icon,
         {"stage A", unlocked, opens, homeScreen}},
        {"alone", automatic(), "1234", icon, {"stage A", alone, opens, lockScreen}},
        {"wrongly confirmed",
         automatic({{kFullAutoUnlockEnabled, true}, {kAutoUnlockPasscodeConfirm, "1"}}),
         "1234",
         icon,
         {"stage A", alone, opens, lockScreen}},
        {"excepted",
         automatic({{kAUAppsDisabled, List{kPhone}}}),
         "1234",
         iconAndCode,
         {"stage A", asks, unlocked, opens, homeScreen}},
        {"with another passcode",
         {{kAutoUnlockEnabled, true}, {kAutoUnlockPasscode, "9"}},
         "1234",
         iconAndCode,
         {"stage A", asks, unlocked, opens, homeScreen}},
        {"not at all", {}, "1234", iconAndCode, {"stage A", asks, unlocked, opens, homeScreen}},
        {"home leads to the lock screen",
         {{kAlwaysReturnToLSEnabled, true}},
         "",
         icon,
         {"stage A", opens, "lock screen"}},
        {"a notice asks", automatic(), "1234", "Down Enter 1 2 3 4", {asks, unlocked, opensMessages}},
        {"a notice without a passcode", {}, "", notice, {opensMessages, homeScreen}},
        {"a notice unlocks",
         automatic({{kAutoUnlockNotifications, true}}),
         "1234",
         notice,
         {aloneMessages, opensMessages, lockScreen}},
        {"the slide", {}, "1234", "Enter 1 2 3 4", {asks, unlocked, homeScreen}},
        {"wrong, and back", {}, "1234", "Enter 4 3 2 1 5 Escape", {asks, "wrong", "back"}},
    };
    for (const Unlocking& one : cases) {
        SCOPED_TRACE(one.what);
        Seen seen(enabled(one.settings), one.passcode);
        EXPECT_THAT(seen.press(one.keys).outcomes(), ElementsAreArray(one.outcomes));
    }
}

TEST(FaceByKeys, TakesNoKeysAfterFourWrongPasscodesForAWhile) {
    Seen seen;
    seen.press("Enter");
    for (int i = 0; i < 4; ++i)
        seen.press("4 4 4 4");
    seen.pass(4.9);
    EXPECT_THAT(seen.press("1 2 3 4").outcomes(), testing::Contains("takes no keys for 5 s"));
    EXPECT_EQ(seen.surface(), Surface::passcode);
    seen.pass(0.2);
    seen.press("1 2 3 4");
    EXPECT_EQ(seen.surface(), Surface::opened);
}

TEST(FaceByKeys, GoesEverywhereAndBack) {
    Seen seen(enabled({{kNotificationsHideOnTap, true}}));
    EXPECT_THAT(seen.press("Space Space Right Right Right Left Escape Escape Right Home").outcomes(),
                ElementsAre("hides the notices", "shows the notices", "stage A", "stage V",
                            "shows org.lumora.plugins.clock", "shows org.lumora.plugins.weather", "stage A", "stage N",
                            "stage A", "stage N"));
    EXPECT_EQ(seen.surface(), Surface::notices);
    EXPECT_THAT(seen.press("S Right").outcomes(), ElementsAre("sleeps", "wakes"));
}

TEST(FaceByKeys, ShowsTheSameAfterItHasSlept) {
    Seen seen;
    const QImage before = seen.picture();
    seen.press("S");
    EXPECT_EQ(seen.picture().pixelColor(195, 400), Qt::black);
    seen.press("Left");
    EXPECT_EQ(seen.picture(), before);
}

TEST(FaceByKeys, ShowsWhereTheKeyboardIs) {
    Seen seen;
    EXPECT_THAT(seen.shown("FocusFrame"), IsEmpty());
    for (const char* there : {"Down", "Escape Right Down"}) {
        const QImage before = seen.picture();
        seen.press(there);
        const auto frames = seen.shown("FocusFrame");
        ASSERT_EQ(frames.size(), 1U) << there;
        const QRectF frame = frames[0]->mapRectToScene(frames[0]->boundingRect());
        EXPECT_TRUE(QRectF(0, 0, 390, 844).contains(frame));
        EXPECT_NE(seen.picture(), before);
        EXPECT_NE(seen.window.activeFocusItem(), seen.item.get()) << "assistive tools follow it";
    }
    seen.press("Escape");
    EXPECT_THAT(seen.shown("FocusFrame"), IsEmpty());
    EXPECT_EQ(seen.window.activeFocusItem(), seen.item.get());
}

TEST(FaceByKeys, PressesWhatAssistiveToolsHaveTakenTheKeyboardTo) {
    Seen seen(enabled(), "");
    seen.press("Right");
    for (QQuickItem* action : seen.shown("Action_"))
        if (action->property("gesture") == "tap icons[1]") action->forceActiveFocus();
    seen.logged();
    seen.press("Enter");
    EXPECT_THAT(seen.logged(), ElementsAre("tap icons[1]", "-> opens org.lumora.samples.Weather"));
}

TEST(FaceByKeys, TakesAHeldKeyOnceUnlessItMoves) {
    Seen seen(enabled({{kNotificationsHideOnTap, true}}));
    const auto repeat = [&](Qt::Key key) {
        for (const bool again : {false, true, true}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, again);
            QCoreApplication::sendEvent(&seen.window, &event);
        }
    };
    repeat(Qt::Key_Space);
    EXPECT_THAT(seen.outcomes(), ElementsAre("hides the notices"));
    repeat(Qt::Key_Right);
    EXPECT_THAT(seen.outcomes(), ElementsAre("stage A", "stage V", "shows org.lumora.plugins.clock"));
}

TEST(FaceByKeys, LeavesShortcutsToTheWindow) {
    Seen seen;
    QTest::keyClick(&seen.window, Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(&seen.window, Qt::Key_Left, Qt::AltModifier);
    EXPECT_THAT(seen.logged(), IsEmpty());
}

TEST(FaceByFingers, EndsADragThatLeavesTheWindow) {
    Seen seen;
    QTest::mousePress(&seen.window, Qt::LeftButton, {}, {200, 350});
    QTest::mouseMove(&seen.window, {100, 350});
    QTest::mouseMove(&seen.window, {-300, 350});
    QTest::mouseRelease(&seen.window, Qt::LeftButton, {}, {-300, 350});
    EXPECT_THAT(seen.logged(), ElementsAre("swipe left", "-> stage A"));
    EXPECT_EQ(seen.face.stageDrag(), 0);
}

TEST(FaceByFingers, TakesTheFirstOfSeveralFingersAndButtons) {
    Seen seen;
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(&seen.window, screen.get()).press(0, {200, 350});
    QTest::touchEvent(&seen.window, screen.get()).stationary(0).press(1, {100, 600});
    QTest::touchEvent(&seen.window, screen.get()).move(0, {150, 350}).move(1, {300, 600});
    QTest::touchEvent(&seen.window, screen.get()).move(0, {80, 350}).release(1, {300, 600});
    QTest::touchEvent(&seen.window, screen.get()).release(0, {80, 350});
    EXPECT_THAT(seen.logged(), ElementsAre("swipe left", "-> stage A"));
    QTest::mousePress(&seen.window, Qt::LeftButton, {}, {200, 350});
    QTest::mousePress(&seen.window, Qt::RightButton, {}, {200, 350});
    QTest::mouseRelease(&seen.window, Qt::RightButton, {}, {200, 350});
    QTest::mouseRelease(&seen.window, Qt::LeftButton, {}, {200, 350});
    EXPECT_THAT(seen.logged(), ElementsAre("tap"));
}

TEST(FaceByFingers, DoesNothingForAWheel) {
    Seen seen;
    const QImage before = seen.picture();
    QWheelEvent wheel({200, 350}, {200, 350}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&seen.window, &wheel);
    EXPECT_THAT(seen.logged(), IsEmpty());
    EXPECT_EQ(seen.picture(), before);
}

TEST(FaceMotion, GoesOnFromWhereTheFingerLeftTheStage) {
    Seen seen(enabled(), "1234", true);
    const auto apps = seen.item->findChild<QQuickItem*>("A");
    ASSERT_TRUE(apps);
    EXPECT_EQ(apps->x(), 390);
    seen.drag({300, 350}, {-150, 0});
    EXPECT_EQ(apps->x(), 240);
    seen.face.release();
    EXPECT_GT(apps->x(), 100) << "it has not jumped";
    EXPECT_TRUE(QTest::qWaitFor([&] { return apps->x() == 0; }));
    EXPECT_EQ(seen.surface(), Surface::apps);
}

TEST(FaceMotion, GrowsAnAppViewOutOfItsIcon) {
    Seen seen(enabled(), "1234", true);
    seen.face.show(Surface::apps);
    const auto apps = seen.item->findChild<QQuickItem*>("A");
    ASSERT_TRUE(QTest::qWaitFor([&] { return apps->x() == 0; }));
    const QRectF icon = toQt(seen.look().icons[1].picture.frame);
    seen.face.act("hold icons[1]");
    const auto cards = seen.shown("AppView");
    ASSERT_EQ(cards.size(), 1U);
    const auto card = [&] { return cards[0]->mapRectToScene(toQt(seen.look().appView.frame)); };
    EXPECT_LT(std::abs(card().x() - icon.x()) + std::abs(card().width() - icon.width()), 120) << "it begins there";
    EXPECT_TRUE(apps->isVisible()) << "the icons fade where they are";
    EXPECT_TRUE(QTest::qWaitFor([&] { return card() == toQt(seen.look().appView.frame); }));
    EXPECT_FALSE(apps->isVisible());
}

TEST(FaceMotion, LetsASwipedNoticeLeaveBeforeItOpens) {
    Seen seen(enabled(automatic({{kAutoUnlockNotifications, true}, {kAUNotificationsOnMainThread, true}})), "1234",
              true);
    const QPointF middle = seen.middleOf(seen.look().notices.items[1]);
    const auto notices = seen.item->findChild<QQuickItem*>("N");
    const auto right = [&] {
        double furthest = 0;
        for (QQuickItem* icon : seen.shown("lumora::AppIcon"))
            if (notices->isAncestorOf(icon)) furthest = std::max(furthest, icon->mapToScene({}).x());
        return furthest;
    };
    const double before = right();
    seen.drag(middle, {200, 0});
    EXPECT_EQ(right(), before + 200);
    seen.face.release();
    EXPECT_EQ(seen.face.leaving(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return right() == before + 390; })) << "beyond the edge";
    seen.pass(Behaviour::kSwipe);
    EXPECT_EQ(seen.face.leaving(), -1);
    EXPECT_EQ(seen.surface(), Surface::opened);
}

TEST(FaceMotion, DoesWithoutWhereItIsUnwanted) {
    Seen seen;
    const auto apps = seen.item->findChild<QQuickItem*>("A");
    seen.press("Right");
    EXPECT_EQ(apps->x(), 0);
    seen.press("Down Right Menu");
    EXPECT_FALSE(apps->isVisible());
    seen.press("Escape Enter");
    EXPECT_EQ(seen.shown("Passcode_").at(0)->opacity(), 1);
    EXPECT_FALSE(apps->isVisible());
    EXPECT_EQ(seen.shown("PasscodeGround").size(), 1U);
}

TEST(FaceToTools, CountsTheDigitsThatAreTypedAndNeverTellsThem) {
    Seen seen;
    seen.press("Enter");
    const auto said = [&] {
        const auto all = told(seen, QAccessible::AlertMessage);
        return all.size() == 1 ? all.begin()->first.toStdString() : std::to_string(all.size());
    };
    EXPECT_EQ(said(), "Enter Passcode");
    seen.press("4 3");
    EXPECT_EQ(said(), "2 of 4 digits typed");
    seen.press("BackSpace");
    EXPECT_EQ(said(), "1 of 4 digits typed");
    seen.press("4 4 4");
    EXPECT_EQ(said(), "Wrong passcode. Enter Passcode");
    seen.press("4 4 4 4 4 4 4 4 4 4 4 4 1");
    EXPECT_EQ(said(), "Wrong passcode. Try Again in a Moment");
    seen.pass(5);
    seen.press("1");
    EXPECT_EQ(said(), "1 of 4 digits typed");
}

TEST(FaceToTools, HidesAndShowsTheNoticesWhereATapBesideThemDoes) {
    Seen seen;
    EXPECT_FALSE(told(seen, QAccessible::Button).contains("Hide Notices"));
    seen.change(kNotificationsHideOnTap, true);
    for (const auto& [name, outcome] :
         {std::pair("Hide Notices", "hides the notices"), std::pair("Show Notices", "shows the notices")}) {
        seen.logged();
        const auto buttons = told(seen, QAccessible::Button);
        ASSERT_TRUE(buttons.contains(name));
        buttons.at(name)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_THAT(seen.outcomes(), ElementsAre(outcome));
    }
}

TEST(FaceToTools, TellsOfNoNoticesToHideOnOtherStages) {
    Seen seen(enabled({{kNotificationsHideOnTap, true}}));
    seen.press("Right");
    EXPECT_FALSE(told(seen, QAccessible::Button).contains("Hide Notices"));
}
