import QtQuick
import Lumora

// A group of rows with its header above and its footer beneath.
Column {
    id: root

    required property GroupModel group

    function fileFor(cell) {
        switch (cell) {
        case RowModel.LinkCell:
        case RowModel.LinkListCell:
            return "LinkRow.qml";
        case RowModel.ListItemCell:
            return "OptionRow.qml";
        case RowModel.SliderCell:
            return "SliderRow.qml";
        case RowModel.SwitchCell:
            return "SwitchRow.qml";
        case RowModel.EditTextCell:
        case RowModel.SecureEditTextCell:
            return "FieldRow.qml";
        case RowModel.ButtonCell:
            return "ButtonRow.qml";
        default:
            return "StaticRow.qml";
        }
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
            // Handed over as initial properties, so that a row can rely on them from the beginning.
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
