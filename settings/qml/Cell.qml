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
    property bool boxed: true  // the corners are round
    property real indent: 0    // of all that stands in the row
    property color ground: down ? Theme.cellDown : Theme.cell
    readonly property real rounding: boxed ? Theme.rowRadius : 0

    implicitHeight: Theme.rowHeight
    clip: true

    Rectangle {
        y: root.first ? 0 : -radius
        width: parent.width
        height: parent.height + (root.first ? 0 : radius) + (root.last ? 0 : radius)
        radius: root.rounding
        color: root.ground
        antialiasing: true
    }
    Rectangle {
        visible: !root.last
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: root.indent + Theme.contentInset(root.hasIcon) }
        height: 1 / Screen.devicePixelRatio
        color: Theme.hairline
    }
    Loader {
        active: root.hasIcon
        visible: !root.empty
        anchors { left: parent.left; leftMargin: root.indent + Theme.inset; verticalCenter: parent.verticalCenter }
        width: Theme.iconSize
        height: Theme.iconSize
        sourceComponent: IconItem { icon: root.icon }
    }
    Rectangle {
        visible: root.focused
        anchors { fill: parent; margins: 1 }
        radius: Math.max(0, root.rounding - 1)
        color: "transparent"
        border { width: 2; color: Theme.accent }
        antialiasing: true
    }
}
