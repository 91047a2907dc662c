import QtQuick
import Lumora

// A group of rows with its header above and its footer beneath.
Column {
    id: root

    required property GroupModel group

    // Of options, the Tab key reaches one: that with the focus, else the chosen one.
    readonly property int option: {
        for (let i = 0; i < rows.count; ++i)
            if (rows.itemAt(i)?.item?.activeFocus)
                return i;
        return Math.max(0, Array.from(group.rows).findIndex(row => row.marked));
    }

    function rowItems() { return Array.from({ length: rows.count }, (_, i) => rows.itemAt(i).item) }
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
            onLoaded: {
                if (item instanceof OptionRow)
                    item.reached = Qt.binding(() => root.option === index);
            }
        }
    }
    GroupFooter {
        visible: text.length > 0
        width: root.width
        text: root.group.footer
    }
}
