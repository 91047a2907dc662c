import QtQuick
import Lumora

// Calls an operation of the page.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Button

    // Within an item that has its height: a title whose height the row sets keeps the one that it had with one line.
    contentItem: Item {
        implicitHeight: title.implicitHeight

        RowTitle {
            id: title

            y: (parent.height - height) / 2
            width: parent.width
            text: control.text
            color: Theme.accent
        }
    }
}
