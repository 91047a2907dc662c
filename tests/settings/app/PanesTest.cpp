// The window on the real bundle, in one column and in two: what a person does in it, and what the pages hear of that.
#include "settings/model/Panes.h"
#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "settings/model/SearchModel.h"
#include "settings/model/Shell.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointingDevice>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QWheelEvent>
#include <QtQml/qqmlextensionplugin.h>

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <random>
#include <vector>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace panes_test {

using namespace settings;
using namespace platform;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr QSize kNarrow{390, 844};
constexpr QSize kWide{1000, 844};
constexpr QSize kLow{1000, 500};

bool happens(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, int(std::chrono::milliseconds(tests::kLongEnough).count()));
}

/// The first item that is shown and matches, from the outside to the inside; null for none.
QQuickItem* shownIn(QQuickItem& item, const std::function<bool(const QQuickItem&)>& matches) {
    if (!item.isVisible()) return nullptr;
    if (matches(item)) return &item;
    const QList<QQuickItem*> children = item.childItems();
    for (QQuickItem* child : children)
        if (QQuickItem* found = shownIn(*child, matches)) return found;
    return nullptr;
}

std::string wordsFor(const std::string& page, const std::optional<Event>& event) {
    if (!event) return page + ": back";
    if (const auto* tap = std::get_if<RowTapped>(&*event)) return page + ": tap " + std::to_string(tap->row);
    if (const auto* change = std::get_if<ValueChanged>(&*event))
        return page + ": change " + std::to_string(change->row) + " to " + description(change->value);
    return page + ": other " + std::to_string(event->index());
}

/// One that is never destroyed, as its main thread is not.
Shell& newShell() {
    static auto& all = *new std::vector<Shell*>;
    return *all.emplace_back(new Shell);
}

/// A window, a person at it, and a tweak that counts the questions and changes that come.
class Visit {
  public:
    explicit Visit(QSize size) {
        panes_.setColumns(2);
        engine_.addImportPath("qrc:/qt/qml");
        const platform::CGSize content = contentSizeOf({double(size.width()), double(size.height())});
        shell.setAnimated(false);
        shell.launch({std::filesystem::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle", {}, content},
                     [](const std::string& why) { FAIL() << why; });
        shell.post([this](Navigation& navigation) {
            navigation.setListener([this](const std::string& page, const std::optional<Event>& event) {
                if (event && std::holds_alternative<TableScrolled>(*event)) return; // tells of the window's size
                const std::lock_guard held(mutex_);
                heard_.push_back(wordsFor(page, event));
            });
        });
        QObject::connect(&search, &SearchModel::chosen, &shell, &Shell::land);
        engine_.setInitialProperties({{"shell", QVariant::fromValue(&shell)},
                                      {"search", QVariant::fromValue(&search)},
                                      {"panes", QVariant::fromValue(&panes_)},
                                      {"width", size.width()},
                                      {"height", size.height()}});
        engine_.load(QUrl("qrc:/qt/qml/Lumora/Main.qml"));
        window = qobject_cast<QQuickWindow*>(engine_.rootObjects().value(0));
        EXPECT_TRUE(happens([this] { return shell.topPage(); }));
        settle();
    }

    ~Visit() {
        shell.post([](Navigation& navigation) { navigation.setListener([](const auto&, const auto&) {}); });
        settle();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    /// Has everything arrive that is under way.
    void settle() {
        bool isDone = false;
        shell.post([](Navigation&) {}, [&isDone] { isDone = true; });
        EXPECT_TRUE(happens([&isDone] { return isDone; }));
        QTest::qWait(1); // what waits for the next turn of the loop
    }

    QQuickItem* page(const std::string& className) {
        return shownIn(*window->contentItem(), [&](const QQuickItem& item) {
            const auto* model = item.property("page").value<PageModel*>();
            return model && item.inherits("QQuickFocusScope") && model->snapshot().className == className;
        });
    }
    /// Goes back until the page can be used.
    void reach(const std::string& className) {
        while (!page(className) && shell.pages().size() > 1) {
            QTest::keyClick(window, Qt::Key_Escape);
            settle();
        }
        reached_ = className;
    }
    QQuickItem* row(const QString& name, bool link = false) {
        QQuickItem* place = page(reached_);
        QQuickItem* found = place ? shownIn(*place,
                                            [&](const QQuickItem& item) {
                                                const auto* model = item.property("row").value<RowModel*>();
                                                const bool leads = model && (model->cell() == RowModel::LinkCell ||
                                                                             model->cell() == RowModel::LinkListCell);
                                                return model && leads == link && model->accessibleName() == name;
                                            })
                                  : nullptr;
        EXPECT_TRUE(found) << name.toStdString() << " on " << reached_;
        return found;
    }
    void open(const QString& name) { click(name, true); }
    void click(const QString& name, bool link = false) {
        const QQuickItem* item = row(name, link);
        if (!item) return;
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(window, Qt::LeftButton, {}, middle.toPoint());
        settle();
    }
    void scroll(double y) {
        QQuickItem* place = page(reached_);
        QQuickItem* scroller = shownIn(*place, [](const QQuickItem& item) {
            return item.inherits("QQuickFlickable") && item.property("contentHeight").toDouble() > item.height();
        });
        ASSERT_TRUE(scroller);
        scroller->setProperty("contentY", y);
        settle();
    }
    /// A finger that goes so far from a place, in steps, and rests there before it is lifted.
    void drag(QPoint from, int across) {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        QTest::touchEvent(window, screen).press(0, from, window);
        for (int i = 1; i <= 10; ++i)
            QTest::touchEvent(window, screen).move(0, from + QPoint(across * i / 10, 0), window);
        QTest::qWait(120);
        QTest::touchEvent(window, screen).release(0, from + QPoint(across, 0), window);
        settle();
    }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(window, letter.toLatin1());
        settle();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window, Qt::Key(key), modifiers);
        settle();
        settle(); // what a landing has led to is shown when it is over
    }

    std::vector<std::string> heard() {
        const std::lock_guard held(mutex_);
        return heard_;
    }
    std::vector<std::string> opened() const {
        std::vector<std::string> classes;
        for (const PageModel* page : shell.pages())
            classes.push_back(page->snapshot().className);
        return classes;
    }

    Shell& shell = newShell();
    SearchModel search;
    QQuickWindow* window = nullptr;
    std::atomic<int> questions = 0;
    std::atomic<int> changes = 0;

  private:
    const tests::PortsFolder ports_;
    const tests::ServedPort asked_{lumora::portName(lumora::kRequestTweakSettings), [this](auto&, auto, const auto&) {
                                       ++questions;
                                       return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{});
                                   }};
    const tests::ServedPort told_{lumora::portName(lumora::kUpdateSettings), [this](auto&, auto, const auto&) {
                                      ++changes;
                                      return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{});
                                  }};
    Panes panes_;
    QQmlApplicationEngine engine_;
    std::string reached_;
    std::mutex mutex_;
    std::vector<std::string> heard_;
};

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

/// Two rows of the Passcode View, and one of the first page.
search::Index someRows() {
    const auto row = [](std::size_t page, std::size_t at, const char* title, const char* key) {
        search::Entry entry;
        entry.page = page;
        entry.row = at;
        entry.title = title;
        entry.identifier = key;
        return entry;
    };
    return {{{"LumoraPreferences", "Lumora", std::nullopt, 0, "", ""},
             {"LSSettingsController", "Lock Screen Settings", 0, 8, "", "Lock Screen Settings"},
             {"LSPasscodeSettings", "Passcode View", 1, 10, "", "Passcode View"}},
            {row(2, 1, "Passcode Blur", "kLSPasscodeBlurHidden"), row(2, 0, "Blur Cutoff", "kLSBlurCutoffEnabled"),
             row(0, 0, "Hide Notifications On Tap", "kNotificationsHideOnTap")}};
}

struct Results : testing::TestWithParam<QSize> {
    Results() { visit.search.setIndex(someRows()); }

    [[nodiscard]] bool areShown() const {
        const QQuickItem* field = visit.window->activeFocusItem();
        return field && field->property("text").toString() == visit.search.query() && !visit.search.query().isEmpty();
    }
    void lookFor(const QString& words) {
        visit.press(Qt::Key_F, Qt::ControlModifier);
        visit.type(words);
        EXPECT_TRUE(areShown());
    }

    Visit visit{GetParam()};
    const std::vector<std::string> taps{"LumoraPreferences: tap 8", "LSSettingsController: tap 10"};
};

TEST_P(Results, AreThereAgainAsTheyWereLeftWhenOneGoesBack) {
    lookFor("blur");
    visit.press(Qt::Key_Down);
    const int chosen = visit.search.current();
    for (const auto& [key, modifiers] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_Left, Qt::AltModifier}}) {
        visit.press(Qt::Key_Return);
        EXPECT_FALSE(areShown());
        EXPECT_THAT(visit.opened(), ElementsAre("LumoraPreferences", "LSSettingsController", "LSPasscodeSettings"));
        visit.press(key, modifiers);
        EXPECT_TRUE(areShown());
        EXPECT_EQ(visit.search.query(), "blur");
        EXPECT_EQ(visit.search.current(), chosen);
    }
    EXPECT_EQ(visit.heard(), taps) << "no page hears of the way back to the results, nor is one opened anew";
}

TEST_P(Results, AreThereAgainWhenSomethingThatTakesLongIsOver) {
    lookFor("blur");
    std::promise<void> over;
    visit.shell.post([&over](Navigation&) { tests::awaited(over.get_future(), "the end of it"); });
    EXPECT_TRUE(happens([this] { return visit.shell.waiting(); }));
    EXPECT_FALSE(areShown());
    over.set_value();
    EXPECT_TRUE(happens([this] { return areShown(); }));
    EXPECT_EQ(visit.search.query(), "blur");
}

TEST_P(Results, LetOneGoBackByHandOnceTheyAreLeft) {
    lookFor("blur");
    visit.press(Qt::Key_Return);
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    visit.press(Qt::Key_Escape); // empties the field
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(3));
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(2));
    EXPECT_EQ(visit.heard().back(), "LSPasscodeSettings: back");
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(1));
}

TEST_P(Results, AreBehindThePageToWhichTheyLedAndNotBehindOthers) {
    lookFor("blur");
    visit.press(Qt::Key_Return);
    visit.reach("LSPasscodeSettings");
    visit.open("Blur Color");
    EXPECT_EQ(visit.opened().back(), "ColorPickerController");
    visit.press(Qt::Key_Escape);
    EXPECT_EQ(visit.opened().back(), "LSPasscodeSettings");
    EXPECT_FALSE(areShown());
    visit.press(Qt::Key_F5); // opens the page anew
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    EXPECT_EQ(visit.opened().back(), "LSPasscodeSettings");
}

TEST_P(Results, AreThereAgainFromTheFirstPageToo) {
    lookFor("notifications");
    visit.press(Qt::Key_Return);
    EXPECT_FALSE(areShown());
    visit.press(Qt::Key_Space);
    EXPECT_THAT(visit.heard(), ElementsAre("LumoraPreferences: change 9 to 1"));
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    visit.press(Qt::Key_Escape);
    visit.press(Qt::Key_Escape);
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), ElementsAre("LumoraPreferences"));
    EXPECT_THAT(visit.heard(), testing::SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(InOneColumn, Results, testing::Values(kNarrow));
INSTANTIATE_TEST_SUITE_P(InTwoColumns, Results, testing::Values(kWide));

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
