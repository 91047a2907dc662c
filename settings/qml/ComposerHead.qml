import QtQuick

// The top of the composer's sheet: its title, and the buttons to cancel and to send.
Item {
    id: root

    property alias title: title.text
    property bool working: false
    property bool sendable: false
    property bool again: false // it was tried before
    // The title gets a line of its own when the room between the buttons is too small for it.
    readonly property real room: width - 2 * (Theme.inset - Theme.buttonPadding + Math.max(cancelButton.width, sendButton.width))
    readonly property bool stacked: title.implicitWidth > room
    readonly property int line: 52
    readonly property int full: line + (stacked ? title.implicitHeight + Theme.lineGap : 0)
    signal cancelTapped
    signal sendTapped

    height: visible ? full : 0

    TextButton {
        id: cancelButton

        anchors { left: parent.left; leftMargin: Theme.inset - leftPadding; verticalCenter: parent.top; verticalCenterOffset: root.line / 2 }
        text: qsTr("Cancel")
        enabled: !root.working
        onClicked: root.cancelTapped()
    }
    Text {
        id: title

        anchors { horizontalCenter: parent.horizontalCenter; verticalCenter: parent.top; verticalCenterOffset: root.stacked ? root.line + height / 2 : root.line / 2 }
        width: Math.min(Math.ceil(implicitWidth), root.width - 2 * Theme.inset)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Theme.text
        font { pixelSize: Theme.barSize; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    TextButton {
        id: sendButton

        anchors { right: parent.right; rightMargin: Theme.inset - rightPadding; verticalCenter: parent.top; verticalCenterOffset: root.line / 2 }
        text: root.again ? qsTr("Try Again") : qsTr("Send")
        strong: true
        enabled: root.sendable
        onClicked: root.sendTapped()
    }
    Hairline {
        anchors.bottom: parent.bottom
        height: 1
    }
}
