import QtQuick
import Lumora

// Opens a page. An option list shows what is chosen in it.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Link
    Accessible.description: row.valueTitle + (row.valueTitle && row.accessibleDescription ? ". " : "") + row.accessibleDescription

    contentItem: Item {
        RowTitle {
            id: title

            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: Math.min(Math.ceil(unbound.advanceWidth) + 1, parent.width - chevron.width - 8 - Math.min(value.implicitWidth + 12, parent.width / 2))
            text: control.text
        }
        TextMetrics {
            id: unbound

            font { family: title.font.family; pixelSize: Theme.bodySize }
            text: control.text
        }
        Text {
            id: value

            anchors { left: title.right; leftMargin: 12; right: chevron.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            text: control.row.valueTitle
            textFormat: Text.PlainText
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
