import QtQuick
import QtQuick.Window
import Lumora

// The ground of one row of a group, with the row's icon where it has one. Only the outer corners of the group are round;
// a Rectangle rounds all four, so the others are cut away.
Item {
    id: root

    property bool first: false
    property bool last: false
    property bool down: false
    property bool focused: false
    property bool hasIcon: false
    property var icon
    property bool empty: false // what stands in the row is in the user's hand

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
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: Theme.contentInset(root.hasIcon) }
        height: 1 / Screen.devicePixelRatio
        color: Theme.hairline
    }
    Loader {
        active: root.hasIcon
        visible: !root.empty
        anchors { left: parent.left; leftMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: Theme.iconSize
        height: Theme.iconSize
        sourceComponent: IconItem { icon: root.icon }
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
