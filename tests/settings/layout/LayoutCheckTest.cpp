#include "tests/settings/layout/LayoutCheck.h"

#include <QAccessible>
#include <QDeadlineTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <stdexcept>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A window of 200 × 400 points with something in it.
class LayoutCheck : public testing::Test {
  protected:
    static void SetUpTestSuite() { QAccessible::setActive(true); }

    std::unique_ptr<QQuickItem> made(const QByteArray& contents) {
        QQmlComponent component(&engine_);
        component.setData(
            "import QtQuick\nimport QtQuick.Templates as T\nItem { width: 200; height: 400\n" + contents + "}", QUrl());
        std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem*>(component.create()));
        if (!item) throw std::runtime_error(component.errorString().toStdString());
        return item;
    }
    std::vector<std::string> faultsOf(const QByteArray& contents) {
        QQuickWindow window;
        const auto item = made(contents);
        item->setParentItem(window.contentItem());
        return tests::layoutFaults(*item);
    }

    static bool eventually(const std::function<bool()>& condition) {
        const QDeadlineTimer end(10'000);
        while (!condition() && !end.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return condition();
    }

    QQmlEngine engine_;
};

TEST_F(LayoutCheck, SaysNothingOfTextsThatHaveRoom) {
    EXPECT_THAT(faultsOf(R"(
        Text { width: 200; text: "Short"; elide: Text.ElideRight }
        Text { y: 100; width: 200; wrapMode: Text.Wrap; text: "words ".repeat(20) }
        Text { y: 300; text: "one" }
        Text { y: 300; x: 100; text: "beside the other" ; width: 100; elide: Text.ElideNone; font.pixelSize: 8 }
    )"),
                IsEmpty());
}

TEST_F(LayoutCheck, FindsATextThatIsCutOff) {
    EXPECT_THAT(faultsOf(R"(Text { width: 100; text: "words ".repeat(20); elide: Text.ElideRight })"),
                ElementsAre(HasSubstr("is cut off")));
    EXPECT_THAT(faultsOf(R"(Text { width: 100; text: "words ".repeat(20); wrapMode: Text.Wrap; maximumLineCount: 2
                                   elide: Text.ElideRight })"),
                ElementsAre(HasSubstr("is cut off")));
}

TEST_F(LayoutCheck, FindsATextThatIsLargerThanItsItem) {
    EXPECT_THAT(faultsOf(R"(Text { width: 20; text: "Donau" })"), ElementsAre(HasSubstr("is wider than its item")));
    EXPECT_THAT(faultsOf(R"(Text { width: 100; height: 20; text: "words ".repeat(20); wrapMode: Text.Wrap })"),
                ElementsAre(HasSubstr("is higher than its item")));
}

TEST_F(LayoutCheck, FindsATextThatStandsOutOfItsRowOrTheWindow) {
    EXPECT_THAT(faultsOf(R"(T.AbstractButton { width: 200; height: 20
                                contentItem: Item { Text { y: 10; text: "Title" } } })"),
                ElementsAre(HasSubstr("stands out of its QQuickAbstractButton")));
    EXPECT_THAT(faultsOf(R"(Item { width: 100; height: 20; clip: true; Text { x: 90; text: "Title" } })"),
                ElementsAre(HasSubstr("stands out of its QQuickItem")));
    EXPECT_THAT(faultsOf(R"(Text { x: 190; text: "Title" })"), ElementsAre(HasSubstr("stands out of the window")));
}

TEST_F(LayoutCheck, FindsWhatOverlaps) {
    EXPECT_THAT(faultsOf(R"(Text { text: "One" } Text { x: 5; text: "Two" })"),
                ElementsAre(HasSubstr("“One” overlaps QQuickText “Two”")));
    EXPECT_THAT(faultsOf(R"(T.Slider { width: 200; height: 30 } Text { y: 5; text: "Two" })"),
                ElementsAre(HasSubstr("overlaps")));
}

TEST_F(LayoutCheck, LooksAtWhatIsScrolledOutOfViewAndNotAtWhatIsHidden) {
    EXPECT_THAT(faultsOf(R"(Flickable { width: 200; height: 100; contentHeight: 2000
                                Text { y: 1900; width: 20; text: "Donau" } })"),
                ElementsAre(HasSubstr("is wider than its item")));
    EXPECT_THAT(faultsOf(R"(Text { visible: false; width: 20; text: "Donau" }
                            Item { opacity: 0; Text { width: 20; text: "Donau" } })"),
                IsEmpty());
}

TEST_F(LayoutCheck, FindsATitleOfTheBarThatNoAssistiveToolIsToldInFull) {
    const QString bar = R"(component NavigationBar: Item { width: 200; height: 40
                             Text { width: 100; text: "words ".repeat(20); elide: Text.ElideRight
                                    Accessible.role: Accessible.Heading; Accessible.name: text; Accessible.ignored: %1 } }
                         NavigationBar {})";
    EXPECT_THAT(faultsOf(bar.arg("false").toUtf8()), IsEmpty());
    EXPECT_THAT(faultsOf(bar.arg("true").toUtf8()), ElementsAre(HasSubstr("no assistive tool is told the rest")));
}

TEST_F(LayoutCheck, FindsWhatHasTheFocusOutOfView) {
    const auto item = made(R"(
        Flickable { objectName: "flick"; width: 200; height: 400; contentHeight: 2000; clip: true
            Item { objectName: "row"; y: 1000; width: 200; height: 44 } })");
    QQuickWindow window;
    window.show();
    item->setParentItem(window.contentItem());
    window.requestActivate();
    ASSERT_TRUE(eventually([&] { return window.isActive(); }));
    EXPECT_THAT(tests::focusFaults(*item), IsEmpty());
    auto* row = item->findChild<QQuickItem*>("row");
    row->forceActiveFocus();
    EXPECT_THAT(tests::focusFaults(*item), ElementsAre(HasSubstr("has the focus, and 0 of its 44 points are in view")));
    auto* flick = item->findChild<QQuickItem*>("flick");
    flick->setProperty("contentY", 620);
    EXPECT_THAT(tests::focusFaults(*item), ElementsAre(HasSubstr("20 of its 44 points")));
    flick->setProperty("contentY", 700);
    EXPECT_THAT(tests::focusFaults(*item), IsEmpty());
    row->setHeight(1000);
    EXPECT_THAT(tests::focusFaults(*item), ElementsAre(HasSubstr("100 of its 1000 points")))
        << "a good part is asked for";
    flick->setProperty("contentY", 990);
    EXPECT_THAT(tests::focusFaults(*item), IsEmpty());
}

TEST_F(LayoutCheck, FindsATextThatHasBecomeSmaller) {
    const auto item = made(R"(
        property int size: 30
        Text { width: 200; font.pixelSize: parent.size; text: "Title" }
        Text { width: 60; font.pixelSize: 2 * parent.size; minimumPixelSize: 5
               fontSizeMode: Text.HorizontalFit; text: "It shrinks" })");
    const auto before = tests::textSizes(*item);
    ASSERT_EQ(before.size(), 2U);
    EXPECT_EQ(before[0].pixels, 30);
    EXPECT_LT(before[1].pixels, 30) << "as it is drawn";
    EXPECT_THAT(tests::smallerThan(before, *item), IsEmpty());
    item->setProperty("size", 20);
    EXPECT_THAT(tests::smallerThan(before, *item), ElementsAre(HasSubstr("“Title” is smaller, 20 < 30")));
}

} // namespace
