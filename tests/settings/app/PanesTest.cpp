// What the pages hear of what a person does in the window, in one column and in two.
#include "tests/settings/app/Visit.h"

#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QQmlComponent>
#include <QQmlContext>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <random>

namespace panes_test {

using namespace tests;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr QSize kLow{1000, 500};

/// Opens pages, turns to others from there, and changes something on each.
void walk(QSize size) {
    Visit visit(size);
    visit.reach("LumoraPreferences");
    visit.open("Apps");
    visit.reach("AppsController");
    visit.click("Badges");
    visit.reach("LumoraPreferences");
    visit.open("Lock Screen Settings");
    visit.reach("LSSettingsController");
    visit.click("Status Bar");
    visit.open("Passcode View");
    visit.reach("LSPasscodeSettings");
    visit.click("Passcode Blur");
    visit.reach("LSSettingsController");
    visit.open("Date View");
    visit.reach("LSSettingsController");
    visit.click("Camera Grabber");
    visit.click("Date Subtitle Text");
    visit.type("abc");
    QTest::keyClick(visit.window, Qt::Key_Return);
    visit.reach("LumoraPreferences");
    visit.open("Change Log");
    visit.reach("LumoraPreferences");
    visit.open("Sleep After");
    visit.reach("LumoraPreferences");
    visit.click("Hide Notifications On Tap");
    visit.open("Sleep After");
    visit.reach("PSListItemsController");
    visit.click("30 Seconds");

    EXPECT_THAT(visit.heard(), ElementsAreArray({
                                   "LumoraPreferences: tap 2",
                                   "AppsController: change 6 to 1",
                                   "AppsController: back",
                                   "LumoraPreferences: tap 8",
                                   "LSSettingsController: change 1 to 1",
                                   "LSSettingsController: tap 10",
                                   "LSPasscodeSettings: change 1 to 1",
                                   "LSPasscodeSettings: back",
                                   "LSSettingsController: tap 11",
                                   "LSDateViewSettings: back",
                                   "LSSettingsController: change 3 to 1",
                                   "LSSettingsController: change 13 to abc",
                                   "LSSettingsController: back",
                                   "LumoraPreferences: tap 11",
                                   "ChangeLogController: back",
                                   "LumoraPreferences: tap 4",
                                   "PSListItemsController: back",
                                   "LumoraPreferences: change 9 to 1",
                                   "LumoraPreferences: tap 4",
                                   "PSListItemsController: tap 5",
                               }));
    EXPECT_TRUE(happens([&] { return visit.changes == 7; })) << visit.changes;
    EXPECT_TRUE(happens([&] { return visit.questions == 5; }))
        << "one for each page with settings: " << visit.questions;
    EXPECT_THAT(visit.opened(), ElementsAreArray({"LumoraPreferences", "PSListItemsController"}));
}

TEST(Panes, HearInOneColumnWhatAPersonDoes) {
    walk(kNarrow);
}

TEST(Panes, HearTheSameInTwoColumns) {
    walk(kWide);
}

/// Where everything that scrolls stands.
std::vector<double> placesIn(QQuickItem& item) {
    std::vector<double> places;
    if (item.isVisible() && item.inherits("QQuickFlickable")) places.push_back(item.property("contentY").toDouble());
    const QList<QQuickItem*> children = item.childItems();
    for (QQuickItem* child : children)
        for (const double place : placesIn(*child))
            places.push_back(place);
    return places;
}

/// Gives the window a hundred sizes, of one column and of two, and then its own again. Nothing is lost on the way, and
/// everything is where it was at the end.
void resizeAtRandom(Visit& visit, unsigned seed, const std::function<void()>& look) {
    const auto pages = visit.shell.pages();
    const auto heard = visit.heard();
    const auto places = placesIn(*visit.window->contentItem());
    const QQuickItem* focused = visit.window->activeFocusItem();
    std::mt19937 random(seed);
    std::uniform_int_distribution widths(320, 1900);
    std::uniform_int_distribution heights(400, 1200);
    const QSize own = visit.window->size();
    for (int i = 0; i < 100; ++i) {
        visit.window->resize(widths(random), heights(random));
        visit.settle();
        ASSERT_EQ(visit.shell.pages(), pages);
        ASSERT_EQ(visit.window->activeFocusItem(), focused) << visit.window->width() << "x" << visit.window->height();
        look();
    }
    visit.window->resize(own);
    visit.settle();
    EXPECT_TRUE(QTest::qWaitFor([&] { return placesIn(*visit.window->contentItem()) == places; }))
        << testing::PrintToString(placesIn(*visit.window->contentItem())) << " instead of "
        << testing::PrintToString(places);
    EXPECT_EQ(visit.heard(), heard);
}

TEST(Panes, LoseNothingWhenTheWindowGetsOtherSizes) {
    Visit visit(kLow);
    visit.reach("LumoraPreferences");
    visit.scroll(90);
    visit.open("Lock Screen Settings");
    visit.reach("LSSettingsController");
    visit.scroll(250);
    visit.click("Slide To Unlock Text");
    visit.type("half");
    const QQuickItem* field = visit.window->activeFocusItem();
    resizeAtRandom(visit, 1, [&] { ASSERT_EQ(field->property("text").toString(), "half"); });
    QTest::keyClick(visit.window, Qt::Key_Return);
    visit.open("Passcode View");
    visit.reach("LSPasscodeSettings");
    visit.scroll(333);
    resizeAtRandom(visit, 2, [] {});
    visit.reach("LumoraPreferences");
    visit.scroll(200);
    visit.open("Change Log");
    resizeAtRandom(visit, 3, [] {});
    visit.reach("LumoraPreferences");
    visit.scroll(0);
    visit.open("Lock Screen Settings");
    visit.reach("LSSettingsController");
    visit.scroll(300);
    visit.open("Date View");
    visit.reach("LSDateViewSettings");
    visit.open("Date View Font");
    visit.reach("FontViewController");
    visit.scroll(700);
    resizeAtRandom(visit, 4, [] {});
    EXPECT_EQ(visit.changes, 1);
}

TEST(Panes, OpenNothingBecauseAWindowIsWide) {
    Visit visit(kNarrow);
    visit.window->resize(kWide);
    visit.settle();
    EXPECT_TRUE(happens([&] { return visit.shell.sideBySide(); }));
    EXPECT_THAT(visit.opened(), ElementsAreArray({"LumoraPreferences"}));
    EXPECT_THAT(visit.heard(), IsEmpty());
    EXPECT_EQ(visit.questions, 1);
}

TEST(Panes, LeaveThePageOpenWhoseRowIsTappedAgain) {
    Visit visit(kWide);
    visit.reach("LumoraPreferences");
    visit.open("Apps");
    visit.open("Apps");
    EXPECT_THAT(visit.heard(), ElementsAreArray({"LumoraPreferences: tap 2"}));
}

TEST(Panes, ScrollAViewInTheMiddleFromBesideIt) {
    Visit visit({1600, 844});
    visit.reach("LumoraPreferences");
    visit.open("Change Log");
    const QPointF beside(420, 400);
    ASSERT_FALSE(shownIn(*visit.page("ChangeLogController"), [&](const QQuickItem& item) {
        return item.inherits("QQuickFlickable") && item.mapRectToScene({{}, item.size()}).contains(beside);
    }));
    QWheelEvent wheel(beside, beside, {}, {0, -240}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(visit.window, &wheel);
    EXPECT_TRUE(happens([&] { return placesIn(*visit.page("ChangeLogController")).front() > 0; }));
}

TEST(Panes, KeepWhatIsTypedInTheListWhenOneColumnIsLeft) {
    Visit visit(kWide);
    visit.reach("LumoraPreferences");
    visit.open("Lock Screen Settings");
    visit.reach("LSSettingsController");
    visit.open("Date View");
    visit.click("Date Subtitle Text");
    visit.type("seen");
    visit.window->resize(kNarrow);
    visit.settle();
    EXPECT_THAT(visit.opened(), ElementsAreArray({"LumoraPreferences", "LSSettingsController"}));
    QTest::keyClick(visit.window, Qt::Key_Return);
    visit.settle();
    EXPECT_EQ(visit.heard().back(), "LSSettingsController: change 13 to seen");
}

TEST(Panes, HearOfAFingerFromTheEdgeWhatTheyHearOfBackAndNothingWhenItReturns) {
    for (const bool mirrored : {false, true}) {
        QGuiApplication::setLayoutDirection(mirrored ? Qt::RightToLeft : Qt::LeftToRight);
        Visit visit(kNarrow);
        visit.reach("LumoraPreferences");
        visit.open("Apps");
        const int edge = mirrored ? kNarrow.width() - 4 : 3;
        const int on = mirrored ? -1 : 1;
        visit.drag({edge, 400}, on * 100);
        EXPECT_THAT(visit.opened(), ElementsAreArray({"LumoraPreferences", "AppsController"}));
        visit.drag({kNarrow.width() - edge, 400}, -on * 300);
        visit.drag({edge, 400}, on * 300);
        EXPECT_THAT(visit.heard(), ElementsAreArray({"LumoraPreferences: tap 2", "AppsController: back"}));
        EXPECT_THAT(visit.opened(), ElementsAreArray({"LumoraPreferences"}));
        visit.drag({edge, 400}, on * 300);
        EXPECT_EQ(visit.heard().size(), 2U) << "the first page stays";
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

/// Stands in for what reads profiles, and keeps what it is to open.
std::unique_ptr<QObject> newProfiles(const QObject& window) {
    QQmlComponent component(qmlContext(&window)->engine());
    component.setData("import QtQml\nQtObject { property string opened\nsignal offered(var offer, string title)\n"
                      "function open(file) { opened += file } }",
                      QUrl());
    return std::unique_ptr<QObject>(component.create());
}

void drop(QQuickWindow& window, const QList<QUrl>& files) {
    QMimeData data;
    data.setUrls(files);
    const QPoint place(100, 400);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    QDropEvent dropped(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &dropped);
}

TEST(PassingNotice, StandsAboveASheetAndOffersToUndoOnceThatIsGone) {
    Visit visit(kNarrow);
    visit.reach("LumoraPreferences");
    visit.open("Apps");
    visit.reach("AppsController");
    visit.click("Badges");
    QQuickItem& content = *visit.window->contentItem();
    const auto notice = [&] {
        return shownIn(content, [](const QQuickItem& item) { return item.property("acts").isValid(); });
    };
    const auto offersUndo = [&] {
        return notice() && shownIn(*notice(), [](const QQuickItem& item) { return item.property("text") == "Undo"; });
    };
    emit visit.shell.said("of the page", true);
    EXPECT_TRUE(offersUndo());
    QMetaObject::invokeMethod(visit.window, "offerRevert");
    ASSERT_TRUE(visit.window->property("covered").toBool());
    EXPECT_FALSE(notice()) << "what was said is about the page";
    emit visit.shell.said("of the sheet", true);
    ASSERT_TRUE(notice());
    const QPointF middle = notice()->position() + QPointF(notice()->width() / 2, notice()->height() / 2);
    EXPECT_EQ(content.childAt(middle.x(), middle.y()), notice());
    EXPECT_FALSE(offersUndo());
    QTest::keyClick(visit.window, Qt::Key_Escape);
    EXPECT_TRUE(happens([&] { return offersUndo(); }));
}

TEST(DroppedFile, IsOpenedAsAProfile) {
    Visit visit(kNarrow);
    const auto profiles = newProfiles(*visit.window);
    ASSERT_TRUE(profiles);
    visit.window->setProperty("profiles", QVariant::fromValue(profiles.get()));
    const QString file = "file:///tmp/quiet.json";
    EXPECT_TRUE(happens([&] {
        drop(*visit.window, {file});
        return profiles->property("opened") == file;
    }));
    drop(*visit.window, {file, file});
    EXPECT_EQ(profiles->property("opened"), file);
    visit.window->setProperty("profiles", QVariant::fromValue<QObject*>(nullptr));
}

} // namespace panes_test
