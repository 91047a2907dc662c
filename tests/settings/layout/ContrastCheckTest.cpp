#include "tests/settings/layout/ContrastCheck.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A white window of 200 × 100 points with something in it.
class ContrastCheck : public testing::Test {
  protected:
    std::vector<std::string> faultsOf(const QByteArray& contents) {
        QQmlComponent component(&engine_);
        component.setData(
            "import QtQuick\nimport QtQuick.Templates as T\nItem { width: 200; height: 100\n" + contents + "}", QUrl());
        const std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem*>(component.create()));
        if (!item) throw std::runtime_error(component.errorString().toStdString());
        QQuickWindow window;
        window.resize(200, 100);
        window.setColor(Qt::white);
        item->setParentItem(window.contentItem());
        window.show();
        return tests::contrastFaults(*item, window.grabWindow(), {4.5, 3, 3});
    }

    QQmlEngine engine_;
};

TEST_F(ContrastCheck, SaysNothingOfWhatStandsOut) {
    EXPECT_THAT(faultsOf(R"(
        Text { text: "Title"; color: "#767676" }
        T.Switch { x: 20; y: 50; indicator: Rectangle { width: 50; height: 30; radius: 15; color: "#949494" } }
        T.Slider { x: 80; y: 50; width: 100; height: 30
                   background: Rectangle { y: 13; width: 100; height: 4; color: "#949494" } }
    )"),
                IsEmpty());
}

TEST_F(ContrastCheck, FindsAFaintText) {
    EXPECT_THAT(faultsOf(R"(Text { text: "Title"; color: "#777777" })"),
                ElementsAre(HasSubstr("“Title” has a contrast")));
}

TEST_F(ContrastCheck, FindsATextThatIsFaintOnItsOwnGroundOnly) {
    EXPECT_THAT(faultsOf(R"(Rectangle { width: 100; height: 50; color: "#bbbbbb"
                                Text { anchors.fill: parent; text: "Title"; color: "#767676" } })"),
                ElementsAre(HasSubstr("“Title” has a contrast")));
}

TEST_F(ContrastCheck, FindsATextThatIsFaintBecauseOfWhatItIsIn) {
    EXPECT_THAT(faultsOf(R"(Item { opacity: 0.4; Text { text: "Title" } })"), ElementsAre(HasSubstr("has a contrast")));
}

TEST_F(ContrastCheck, FindsTheFaintTrackOfASwitchAndOfASlider) {
    EXPECT_THAT(
        faultsOf(R"(T.Switch { x: 20; indicator: Rectangle { width: 50; height: 30; radius: 15; color: "#959595" } })"),
        ElementsAre(HasSubstr("has a contrast")));
    // Before its handle and behind it.
    EXPECT_THAT(faultsOf(R"(T.Slider { y: 30; width: 100; height: 30
                                background: Rectangle { y: 13; width: 100; height: 4; color: "#959595"
                                    Rectangle { width: 50; height: 4; color: "black" } } })"),
                ElementsAre(HasSubstr("has a contrast")));
}

TEST_F(ContrastCheck, LetsWhatIsDisabledOrHiddenBeFaint) {
    EXPECT_THAT(faultsOf(R"(
        Text { text: "Title"; color: "#cccccc"; enabled: false }
        Text { y: 50; text: "Title"; color: "#cccccc"; visible: false }
    )"),
                IsEmpty());
}

} // namespace
