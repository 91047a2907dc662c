import QtQuick
import QtQuick.Window

// The ground of one row of a group. Only the outer corners of the group are round; a Rectangle rounds all four, so the
// others are cut away.
Item {
    id: root

    property bool first: false
    property bool last: false
    property bool down: false
    property bool focused: false
    property real hairlineInset: Theme.inset

    implicitHeight: Theme.rowHeight
    clip: true

    Rectangle {
        y: root.first ? 0 : -radius
        width: parent.width
        height: parent.height + (root.first ? 0 : radius) + (root.last ? 0 : radius)
        radius: Theme.rowRadius
        color: root.down ? Theme.cellDown : Theme.cell
        antialiasing: true
    }
    Rectangle {
        visible: !root.last
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: root.hairlineInset }
        height: 1 / Screen.devicePixelRatio
        color: Theme.hairline
    }
    Rectangle {
        visible: root.focused
        anchors { fill: parent; margins: 1 }
        radius: Theme.rowRadius - 1
        color: "transparent"
        border { width: 2; color: Theme.accent }
        antialiasing: true
    }
}
