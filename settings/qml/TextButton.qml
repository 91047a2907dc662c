import QtQuick

// A button that is no more than its text, in the accent colour.
PushButton {
    id: root

    property bool strong: false
    property color tint: Theme.accent

    leftPadding: Theme.buttonPadding
    rightPadding: Theme.buttonPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.buttonHeight, implicitContentHeight + Theme.buttonPadding)
    opacity: down ? Theme.downOpacity : 1

    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()

    background: FocusRing { visible: root.visualFocus }
    contentItem: Text {
        text: root.text
        color: root.enabled ? root.tint : Theme.placeholder
        font { pixelSize: Theme.barSize; weight: root.strong ? Font.DemiBold : Font.Normal }
        verticalAlignment: Text.AlignVCenter
    }
}
