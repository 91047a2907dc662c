// Where the focus goes when what has it goes, and what a key does that is still down by then.
#include "tests/settings/app/Visit.h"

#include <QKeyEvent>
#include <QTest>

#include <gmock/gmock.h>

namespace focus_test {

using namespace tests;
using settings::Navigation;

/// A window at "Apps", where a switch has been changed.
struct Focus : testing::Test {
    Focus() {
        visit.reach("LumoraPreferences");
        visit.open("Apps");
        visit.reach("AppsController");
        visit.click("Badges");
    }

    [[nodiscard]] bool isOn(const std::string& className) {
        const QQuickItem* page = visit.page(className);
        return page && page->hasActiveFocus();
    }
    [[nodiscard]] bool isInSearch() const {
        const QQuickItem* focused = visit.window->activeFocusItem();
        return focused && focused->property("text").toString() == visit.search.query();
    }
    /// A key that is held, as a display tells of it: each time it is let go and pressed again.
    void repeat(int key) {
        for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent event(type, key, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(visit.window, &event);
        }
    }

    Visit visit{kWide};
    const std::vector<std::string> soFar{"LumoraPreferences: tap 2", "AppsController: change 6 to 1"};
};

TEST_F(Focus, ComesToThePageWhenTheNoticeGoesWhoseButtonHasIt) {
    emit visit.shell.said("of a profile", true);
    const auto isUndo = [](const QQuickItem& item) {
        return item.inherits("QQuickAbstractButton") && item.property("text") == "Undo";
    };
    const QQuickItem* button = shownIn(*visit.window->contentItem(), isUndo);
    ASSERT_TRUE(button);
    const QPointF middle = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
    QTest::mouseClick(visit.window, Qt::LeftButton, {}, middle.toPoint());
    visit.settle();
    EXPECT_FALSE(shownIn(*visit.window->contentItem(), isUndo));
    EXPECT_TRUE(isOn("AppsController"));
}

TEST_F(Focus, LeavesTheSearchForThePageBesideItAndComesBack) {
    visit.press(Qt::Key_F, Qt::ControlModifier);
    visit.type("blur");
    ASSERT_TRUE(isInSearch());
    visit.press(Qt::Key_F6);
    EXPECT_TRUE(isOn("AppsController"));
    visit.press(Qt::Key_F5); // makes the page anew
    EXPECT_TRUE(isOn("AppsController"));
    visit.press(Qt::Key_F6);
    EXPECT_TRUE(isInSearch());
    visit.press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(isInSearch()) << "which covers the list";
    visit.press(Qt::Key_F5);
    EXPECT_TRUE(isInSearch());
    EXPECT_EQ(visit.search.query(), "blur");
}

TEST_F(Focus, StaysOnASheetWhileThePageBeneathIsMadeAnew) {
    QMetaObject::invokeMethod(visit.window, "offerRevert");
    const QQuickItem* focused = visit.window->activeFocusItem();
    visit.shell.post([page = visit.shell.topPage()->id](Navigation& navigation) { navigation.reload(page); });
    visit.settle();
    EXPECT_EQ(visit.window->activeFocusItem(), focused);
}

TEST_F(Focus, IsOnThePageThatASecondStartOpensInPlaceOfASheet) {
    QMetaObject::invokeMethod(visit.window, "offerRevert");
    ASSERT_TRUE(visit.window->property("covered").toBool());
    visit.shell.activate("LSSettingsController", "");
    visit.settle();
    EXPECT_FALSE(visit.window->property("covered").toBool());
    EXPECT_TRUE(isOn("LSSettingsController"));
}

TEST_F(Focus, ComesBackToARowThatHearsNothingOfTheKeyThatHasChosenInItsMenu) {
    for (const bool isHeld : {false, true}) {
        visit.row("Badges")->forceActiveFocus(Qt::TabFocusReason);
        visit.press(Qt::Key_Menu);
        QTest::keyPress(visit.window, Qt::Key_Space);
        EXPECT_TRUE(visit.row("Badges")->hasActiveFocus()) << "the menu has gone";
        if (isHeld) repeat(Qt::Key_Space);
        QTest::keyRelease(visit.window, Qt::Key_Space);
        visit.settle();
    }
    EXPECT_EQ(visit.heard(), soFar);
}

TEST_F(Focus, HasAHeldKeyChangeASwitchOnce) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        const std::size_t before = visit.heard().size();
        QTest::keyPress(visit.window, key);
        repeat(key);
        QTest::keyRelease(visit.window, key);
        visit.settle();
        EXPECT_EQ(visit.heard().size(), before + 1) << int(key);
    }
}

} // namespace focus_test
