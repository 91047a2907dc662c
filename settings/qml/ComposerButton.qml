import QtQuick
import QtQuick.Templates as T

// A button of the composer: its text in the accent colour.
T.AbstractButton {
    id: root

    property bool strong: false
    property color tint: Theme.accent

    leftPadding: 8
    rightPadding: 8
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(40, implicitContentHeight + 8)
    focusPolicy: Qt.StrongFocus
    opacity: down ? 0.4 : 1

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()

    background: Rectangle {
        visible: root.visualFocus
        radius: 8
        color: "transparent"
        border { width: 2; color: Theme.accent }
        antialiasing: true
    }
    contentItem: Text {
        text: root.text
        color: root.enabled ? root.tint : Theme.placeholder
        font { pixelSize: Theme.bodySizeWithin(40); weight: root.strong ? Font.DemiBold : Font.Normal }
        verticalAlignment: Text.AlignVCenter
    }
}
