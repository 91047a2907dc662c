import QtQuick
import Lumora

// A line of text, as high as the text needs.
Cell {
    id: root

    required property RowModel row

    hasIcon: row.hasIcon
    icon: row.icon
    implicitHeight: Math.max(Theme.rowHeight, label.implicitHeight + 22)

    WordText {
        id: label

        anchors {
            left: parent.left
            leftMargin: Theme.contentInset(root.hasIcon)
            right: parent.right
            rightMargin: Theme.inset
            verticalCenter: parent.verticalCenter
        }
        text: root.row.title
        color: Theme.text
        Accessible.role: Accessible.StaticText
        Accessible.name: root.row.accessibleName
        Accessible.description: root.row.accessibleDescription
    }
}
