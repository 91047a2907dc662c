import QtQuick
import QtQuick.Templates as T
import Lumora

// A row that does one thing when it is tapped. What stands in it is up to the row.
T.AbstractButton {
    id: control

    required property RowModel row
    property bool first: false
    property bool last: false

    implicitHeight: Math.max(Theme.rowHeight, implicitContentHeight + 2 * Theme.rowMargin)
    leftPadding: Theme.contentInset(row.hasIcon)
    rightPadding: Theme.inset
    focusPolicy: Qt.StrongFocus

    onClicked: row.tap()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Accessible.name: row.accessibleName
    Accessible.description: row.accessibleDescription
    Accessible.onPressAction: clicked()

    background: Cell {
        first: control.first
        last: control.last
        down: control.down
        focused: control.visualFocus
        hasIcon: control.row.hasIcon
        icon: control.row.icon
    }
}
