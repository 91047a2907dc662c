import QtQuick

// One header of a message: its name, and a field of one line.
Item {
    id: root

    required property string label
    property alias text: field.text
    property alias readOnly: field.readOnly
    property alias field: field

    implicitHeight: Theme.rowHeight

    Text {
        id: name

        anchors { left: parent.left; leftMargin: Theme.inset; baseline: field.baseline }
        text: qsTr("%1:").arg(root.label)
        color: Theme.secondary
        font.pixelSize: Theme.bodySize
        Accessible.ignored: true
    }
    LineField {
        id: field

        anchors { left: name.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        leftPadding: Theme.mirrored ? Theme.inset : 8
        rightPadding: Theme.mirrored ? 8 : Theme.inset
        clip: true
        Accessible.name: root.label
    }
    Hairline {
        anchors { bottom: parent.bottom; leftMargin: Theme.inset }
        height: 1
    }
}
