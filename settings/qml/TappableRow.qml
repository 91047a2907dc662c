import QtQuick
import Lumora

// A row that does one thing when it is tapped. What is in it is up to each.
PushButton {
    id: control

    required property RowModel row
    property bool first: false
    property bool last: false
    readonly property Item stop: control

    implicitHeight: Theme.rowHeightFor(implicitContentHeight)
    leftPadding: mirrored ? Theme.inset : Theme.contentInset(row.icon)
    rightPadding: mirrored ? Theme.contentInset(row.icon) : Theme.inset

    hoverEnabled: true
    onClicked: {
        if (!activeFocus)
            forceActiveFocus(Qt.OtherFocusReason); // so that the page comes back to this row
        row.tap();
    }

    Accessible.name: row.accessibleName
    Accessible.description: row.accessibleDescription
    Accessible.selectable: row.open
    Accessible.selected: row.open
    Accessible.onPressAction: clicked()

    background: Cell {
        row: control.row
        first: control.first
        last: control.last
        down: control.down
        selected: control.row.open
        hovered: control.hovered
        focused: control.visualFocus
    }
}
