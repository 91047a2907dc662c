import QtQuick

// A line of text, as high as the text needs.
Cell {
    id: root

    required row
    readonly property Item stop: null

    implicitHeight: Math.max(Theme.rowHeight, label.implicitHeight + 2 * Theme.textMargin)

    WordText {
        id: label

        anchors {
            left: parent.left
            leftMargin: Theme.contentInset(root.icon)
            right: parent.right
            rightMargin: Theme.inset
            verticalCenter: parent.verticalCenter
        }
        text: root.row.title
        color: Theme.text
        Accessible.role: Accessible.StaticText
        Accessible.focusable: false
        Accessible.name: root.row.accessibleName
        Accessible.description: root.row.accessibleDescription
    }
}
