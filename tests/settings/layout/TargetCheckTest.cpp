#include "tests/settings/layout/TargetCheck.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

namespace target_check_test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TargetCheck : public testing::Test {
  protected:
    std::vector<std::string> faultsOf(const QByteArray& contents) {
        QQmlComponent component(&engine_);
        component.setData(
            "import QtQuick\nimport QtQuick.Templates as T\nItem { width: 200; height: 200\n" + contents + "}", QUrl());
        const std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem*>(component.create()));
        if (!item) throw std::runtime_error(component.errorString().toStdString());
        return tests::targetFaults(*item);
    }

    QQmlEngine engine_;
};

TEST_F(TargetCheck, SaysNothingOfWhatAFingerFinds) {
    EXPECT_THAT(faultsOf("MouseArea { width: 44; height: 44 } T.Slider { width: 200; height: 44.5 }"), IsEmpty());
}

TEST_F(TargetCheck, FindsWhatIsTooLowOrTooNarrow) {
    EXPECT_THAT(faultsOf("MouseArea { width: 43; height: 80 } T.Button { text: \"Low\"; width: 80; height: 40 }"),
                ElementsAre(HasSubstr("on 43 × "), HasSubstr("“Low” takes a finger on")));
}

TEST_F(TargetCheck, CountsTheRoomAroundAnItemThatItTakesTouchesIn) {
    EXPECT_THAT(faultsOf(R"(MouseArea { width: 20; height: 20; containmentMask: QtObject {
                                function contains(at: point): bool { return Math.abs(at.x - 10) < 23 && Math.abs(at.y - 10) < 23 } } })"),
                IsEmpty());
}

TEST_F(TargetCheck, LeavesOutWhatIsCutOffAroundIt) {
    EXPECT_THAT(faultsOf("Item { width: 44; height: 30; clip: true; MouseArea { width: 44; height: 44 } }"),
                ElementsAre(HasSubstr("44 × 3")));
}

TEST_F(TargetCheck, LeavesOutWhatCannotBePressedAndWhatIsForOtherButtons) {
    EXPECT_THAT(faultsOf("MouseArea { width: 9; height: 9; enabled: false } "
                         "MouseArea { width: 9; height: 9; acceptedButtons: Qt.RightButton } "
                         "MouseArea { width: 9; height: 9; visible: false }"),
                IsEmpty());
}

} // namespace target_check_test
