import QtQuick
import QtQuick.Templates as T

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
    T.TextField {
        id: field

        anchors { left: name.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        leftPadding: 8
        rightPadding: Theme.inset
        activeFocusOnTab: true
        // A control's own font is the desktop's; texts have the application's.
        font.family: name.font.family
        font.pixelSize: Theme.bodySize
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: "white"
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        clip: true
        Accessible.name: root.label

        cursorDelegate: Rectangle {
            visible: field.cursorVisible
            width: 2
            radius: 1
            color: Theme.accent
        }
    }
    Rectangle {
        anchors { left: parent.left; leftMargin: Theme.inset; right: parent.right; bottom: parent.bottom }
        height: 1
        color: Theme.hairline
    }
}
