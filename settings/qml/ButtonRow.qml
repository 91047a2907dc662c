import QtQuick

// A row that calls an operation of the page.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Button

    contentItem: Item {
        implicitHeight: title.implicitHeight

        RowTitle {
            id: title

            anchors.fill: parent
            text: control.text
            color: Theme.accent
        }
    }
}
