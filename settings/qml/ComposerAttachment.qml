import QtQuick

// A file that is attached to a message: its name and size, one above the other when they are too long for one line.
Item {
    id: root

    required property var modelData
    readonly property bool stacked: name.implicitWidth + Theme.textGap + size.implicitWidth > width - 2 * Theme.inset

    height: Theme.rowHeightFor(name.implicitHeight + (stacked ? size.implicitHeight : 0))
    Accessible.role: Accessible.ListItem
    Accessible.name: qsTr("Attachment %1, %2").arg(modelData.name).arg(modelData.size)

    Hairline {
        anchors.leftMargin: Theme.inset
        height: 1
    }
    WordText {
        id: name

        anchors { left: parent.left; leftMargin: Theme.inset; right: parent.right; rightMargin: Theme.inset
                  verticalCenter: parent.verticalCenter; verticalCenterOffset: root.stacked ? -size.height / 2 : 0 }
        text: root.modelData.name
        color: Theme.text
        Accessible.ignored: true
    }
    Text {
        id: size

        anchors { right: parent.right; rightMargin: Theme.inset
                  verticalCenter: parent.verticalCenter; verticalCenterOffset: root.stacked ? name.height / 2 : 0 }
        text: root.modelData.size
        color: Theme.secondary
        font.pixelSize: Theme.bodySize
        Accessible.ignored: true
    }
}
