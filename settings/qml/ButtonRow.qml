import QtQuick
import Lumora

// Calls an operation of the page, with an icon before its title where it has one.
TappableRow {
    id: control

    text: row.title
    hairlineInset: row.hasIcon ? Theme.inset + Theme.iconSize + Theme.inset : Theme.inset
    Accessible.role: Accessible.Button

    contentItem: Item {
        IconItem {
            id: icon

            visible: control.row.hasIcon
            icon: control.row.icon
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: Theme.iconSize
            height: Theme.iconSize
        }
        Text {
            anchors {
                left: icon.visible ? icon.right : parent.left
                leftMargin: icon.visible ? Theme.inset : 0
                right: parent.right
                verticalCenter: parent.verticalCenter
            }
            text: control.text
            color: Theme.accent
            font.pixelSize: Theme.bodySize
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.smallestSize
            elide: Text.ElideMiddle
        }
    }
}
