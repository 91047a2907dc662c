import QtQuick
import Lumora

// Calls an operation of the page.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Button

    contentItem: RowTitle {
        text: control.text
        color: Theme.accent
    }
}
