import QtQuick
import Lumora

// A group of rows with its header above and its footer beneath.
Column {
    id: root

    required property GroupModel group

    function fileFor(cell) {
        return new Map([
            [RowModel.LinkCell, "LinkRow.qml"], [RowModel.LinkListCell, "LinkRow.qml"],
            [RowModel.ListItemCell, "OptionRow.qml"],
            [RowModel.SliderCell, "SliderRow.qml"],
            [RowModel.SwitchCell, "SwitchRow.qml"],
            [RowModel.EditTextCell, "FieldRow.qml"], [RowModel.SecureEditTextCell, "FieldRow.qml"],
            [RowModel.ButtonCell, "ButtonRow.qml"],
        ]).get(cell) ?? "StaticRow.qml";
    }

    GroupHeader {
        visible: text.length > 0
        width: root.width
        text: root.group.header
        topPadding: 4
    }
    Repeater {
        id: rows

        model: root.group.rows

        Loader {
            required property RowModel modelData
            required property int index

            width: root.width
            // As initial properties, which a row can rely on from the beginning.
            Component.onCompleted: setSource(root.fileFor(modelData.cell), {
                row: modelData, first: index === 0, last: index === rows.count - 1,
            })
        }
    }
    GroupFooter {
        visible: text.length > 0
        width: root.width
        text: root.group.footer
    }
}
