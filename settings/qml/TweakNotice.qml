import QtQuick

// Says under the title that changes go nowhere, and afterwards, if some were made, offers to read what is true.
Rectangle {
    id: root

    property bool gone: false
    property bool changesLost: false
    property bool covered: false // by a screen that says it, too
    signal reloadTapped

    visible: (gone || changesLost) && !covered
    height: visible ? Math.max(message.implicitHeight + 2 * Theme.textMargin, reload.visible ? Theme.buttonHeight : 0) : 0
    color: Theme.notice
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message.text

    WordText {
        id: message

        anchors { left: parent.left; leftMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: parent.width - 2 * Theme.inset - (reload.visible ? reload.width : 0)
        text: root.gone ? qsTr("Lumora is not running. Changes are not being kept.")
                        : qsTr("Changes that were made while Lumora was not running are lost.")
        color: Theme.noticeText
        font.pixelSize: Theme.footSize
        horizontalAlignment: reload.visible ? Text.AlignLeft : Text.AlignHCenter
        Accessible.ignored: true
    }
    TextButton {
        id: reload

        visible: !root.gone
        anchors { right: parent.right; rightMargin: Theme.inset - Theme.buttonPadding; verticalCenter: parent.verticalCenter }
        text: qsTr("Reload")
        strong: true
        tint: Theme.noticeText
        onClicked: root.reloadTapped()
    }
}
