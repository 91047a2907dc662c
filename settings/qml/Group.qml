import QtQuick
import Lumora

// A group of rows with its header above and its footer beneath.
Column {
    id: root

    required property GroupModel group
    readonly property var files: ({
        1: "LinkRow.qml", 2: "LinkRow.qml", 3: "OptionRow.qml", 5: "SliderRow.qml", 6: "SwitchRow.qml",
        8: "FieldRow.qml", 12: "FieldRow.qml", 13: "ButtonRow.qml",
    })

    Caption {
        visible: text.length > 0
        width: root.width
        text: root.group.header
        topPadding: 4
        bottomPadding: 7
        Accessible.role: Accessible.Heading
    }
    Repeater {
        id: rows

        model: root.group.rows

        Loader {
            required property RowModel modelData
            required property int index

            width: root.width
            // Handed over as initial properties, so that a row can rely on them from the beginning.
            Component.onCompleted: setSource(root.files[modelData.cell] ?? "StaticRow.qml", {
                row: modelData, first: index === 0, last: index === rows.count - 1,
            })
        }
    }
    Caption {
        visible: text.length > 0
        width: root.width
        text: root.group.footer
        topPadding: 7
        lineHeight: 1.1
        Accessible.role: Accessible.StaticText
    }
}
