import QtQuick
import Lumora

// One row of a table: an icon, a title, a check mark, and the handle to move it by. Empty while it is in the hand.
Cell {
    id: root

    property string title
    property var icon
    property bool hasIcon: false
    property bool marked: false
    property bool movable: false
    property bool empty: false

    hairlineInset: hasIcon ? Theme.inset + Theme.iconSize + Theme.inset : Theme.inset

    Item {
        visible: !root.empty
        anchors { fill: parent; leftMargin: Theme.inset; rightMargin: Theme.inset }

        Loader {
            active: root.hasIcon
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: Theme.iconSize
            height: Theme.iconSize
            sourceComponent: IconItem { icon: root.icon }
        }
        RowTitle {
            anchors {
                left: parent.left
                leftMargin: root.hairlineInset - Theme.inset
                right: signs.left
                rightMargin: 8
                verticalCenter: parent.verticalCenter
            }
            text: root.title
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        Row {
            id: signs

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 12

            CheckMark {
                visible: root.marked
                anchors.verticalCenter: parent.verticalCenter
            }
            Column {
                visible: root.movable
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4

                Repeater {
                    model: 3

                    Rectangle {
                        width: 20
                        height: 2
                        radius: 1
                        color: Theme.tertiary
                    }
                }
            }
        }
    }
}
