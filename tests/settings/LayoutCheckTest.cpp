#include "tests/settings/layout/LayoutCheck.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <gmock/gmock.h>

#include <memory>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A window of 200 × 400 points with something in it.
class LayoutCheck : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
        static int count = 1;
        static char name[] = "layout_check";
        static char* arguments[] = {name, nullptr};
        static QGuiApplication application(count, arguments);
    }

    std::vector<std::string> faultsOf(const char* contents) {
        QQmlComponent component(&engine_);
        component.setData("import QtQuick\nimport QtQuick.Templates as T\nItem { width: 200; height: 400\n" +
                              QByteArray(contents) + "}",
                          QUrl());
        const std::unique_ptr<QObject> made(component.create());
        auto* item = qobject_cast<QQuickItem*>(made.get());
        if (!item) {
            ADD_FAILURE() << component.errorString().toStdString();
            return {};
        }
        QQuickWindow window;
        item->setParentItem(window.contentItem());
        return tests::layoutFaults(*item);
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

} // namespace
