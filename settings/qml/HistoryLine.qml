import QtQuick

// A change of the past, with a button that takes it back.
Item {
    id: root

    required property int index
    required property string title
    required property string path
    required property string change
    required property string time
    required property bool possible
    required property bool later // than the time that is looked at
    signal undone
    signal focused

    implicitHeight: Math.max(Theme.rowHeight, texts.height + 2 * Theme.textMargin)
    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + change + ", " + time
    Accessible.description: path

    Column {
        id: texts

        x: Theme.mirrored ? parent.width - width - Theme.inset : Theme.inset
        width: parent.width - 2 * Theme.inset - undo.width - Theme.textGap
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        WordText {
            width: parent.width
            text: root.title
            color: root.later ? Theme.secondary : Theme.text
            Accessible.ignored: true
        }
        WordText {
            width: parent.width
            text: root.path.length > 0 ? root.path + " · " + root.time : root.time
            color: Theme.secondary
            font.pixelSize: Theme.footSize
            Accessible.ignored: true
        }
        WordText {
            width: parent.width
            text: root.change
            color: Theme.secondary
            font.pixelSize: Theme.detailSize
            Accessible.ignored: true
        }
    }
    TextButton {
        id: undo

        x: Theme.mirrored ? Theme.inset - leftPadding : parent.width - width - Theme.inset + rightPadding
        height: Theme.touchSize
        anchors.verticalCenter: parent.verticalCenter
        visible: root.possible
        text: qsTr("Undo")
        Accessible.name: qsTr("Undo “%1”").arg(root.title)
        Accessible.description: root.change
        onClicked: root.undone()
        onActiveFocusChanged: if (activeFocus) root.focused()
    }
    Hairline { anchors { leftMargin: Theme.inset; bottom: parent.bottom } }
}
