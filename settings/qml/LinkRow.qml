import QtQuick
import Lumora

// Opens a page. An option list shows what is chosen in it.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Link
    Accessible.description: row.valueTitle + (row.valueTitle && row.accessibleDescription ? ". " : "") + row.accessibleDescription

    contentItem: Item {
        Text {
            id: title

            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: Math.min(implicitWidth, parent.width - chevron.width - 8 - Math.min(value.implicitWidth + 12, parent.width / 2))
            text: control.text
            color: Theme.text
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
        }
        Text {
            id: value

            anchors { left: title.right; leftMargin: 12; right: chevron.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            text: control.row.valueTitle
            color: Theme.secondary
            font.pixelSize: Theme.bodySize
            horizontalAlignment: Text.AlignRight
            elide: Text.ElideRight
        }
        Chevron {
            id: chevron

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        }
    }
}
