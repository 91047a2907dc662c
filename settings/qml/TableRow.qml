import QtQuick
import Lumora

// One row of a table: a title, a check mark, and the handle to move it by. Empty while it is in the hand.
Cell {
    id: root

    property string title
    property var titleFont    // undefined for the usual one
    property bool inView: true // until then no font is opened for it
    property bool marked: false
    property bool movable: false
    // The signs are as large as the title, which the height of the row does not let grow for ever.
    readonly property real scaling: Theme.bodySizeWithin(height) / 17

    Item {
        visible: !root.empty
        anchors { fill: parent; leftMargin: Theme.contentInset(root.hasIcon); rightMargin: Theme.inset }

        // Drawn in a font of its own, unless that cannot be.
        Loader {
            id: drawn

            active: root.titleFont !== undefined
            anchors { left: parent.left; right: signs.left; rightMargin: 8; top: parent.top; bottom: parent.bottom }
            sourceComponent: FontTitle {
                text: root.title
                titleFont: root.titleFont
                color: Theme.text
                usualScale: root.scaling
                smallestScale: Theme.smallestFixedSize / 17
                inView: root.inView
            }
        }
        RowTitle {
            visible: !drawn.item?.drawn
            anchors { left: parent.left; right: signs.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            height: parent.height - 1 // odd as a line is, for letters on whole pixels
            text: root.title
            fixedHeight: root.height
            Accessible.ignored: true
        }
        Row {
            id: signs

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 12

            CheckMark {
                visible: root.marked
                anchors.verticalCenter: parent.verticalCenter
                scaling: root.scaling
            }
            Handle {
                visible: root.movable
                anchors.verticalCenter: parent.verticalCenter
                scaling: Math.min(2, root.scaling)
            }
        }
    }
}
