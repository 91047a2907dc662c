import QtQuick
import Lumora

// The ground of one row of a group, with the row's icon if it has one. Only the outer corners of the group are round; a
// Rectangle rounds all four, so the others are cut away.
Item {
    id: root

    property RowModel row // of a page; null in a table
    property bool first: false
    property bool last: false
    property bool down: false
    property bool hovered: false // by the mouse
    property bool selected: false
    property bool focused: false
    property var icon: row?.icon // undefined for none
    property bool empty: false // the contents are in the user's hand
    property bool boxed: true  // the corners are round
    property real indent: 0    // of everything in the row
    property color ground: down ? Theme.cellDown : selected ? Theme.cellSelected : hovered ? Qt.tint(Theme.cell, Qt.alpha(Theme.cellDown, 0.4)) : Theme.cell
    readonly property bool showsChange: Theme.marksChanges && (row?.changed ?? false)
    readonly property bool hasIcon: icon !== undefined
    readonly property real rounding: boxed ? Theme.rowRadius : 0

    implicitHeight: Theme.rowHeight
    clip: true
    onShowsChangeChanged: {
        if (row)
            row.mark = showsChange ? qsTr("Changed since the page was opened") : "";
    }

    Rectangle {
        y: root.first ? 0 : -radius
        width: parent.width
        height: parent.height + (root.first ? 0 : radius) + (root.last ? 0 : radius)
        radius: root.rounding
        color: root.ground
        antialiasing: true
    }
    Rectangle {
        visible: root.selected
        anchors { left: parent.left; leftMargin: 5; verticalCenter: parent.verticalCenter }
        width: 4
        height: parent.height - 16
        radius: 2
        color: Theme.accent
        antialiasing: true
    }
    Loader {
        active: root.showsChange
        anchors { left: parent.left; leftMargin: root.selected ? 10 : 5; verticalCenter: parent.verticalCenter }
        sourceComponent: Rectangle {
            width: 5
            height: 5
            radius: 2.5
            color: Theme.accent
            antialiasing: true
        }
    }
    Hairline {
        visible: !root.last
        anchors { bottom: parent.bottom; leftMargin: root.indent + Theme.contentInset(root.icon) }
    }
    Loader {
        active: root.hasIcon
        visible: !root.empty
        anchors { left: parent.left; leftMargin: root.indent + Theme.inset; verticalCenter: parent.verticalCenter }
        width: Theme.iconSize
        height: Theme.iconSize
        sourceComponent: IconItem { icon: root.icon }
    }
    FocusRing {
        visible: root.focused
        anchors { fill: parent; margins: Theme.ringInset }
        radius: Math.max(0, root.rounding - Theme.ringInset)
    }
}
