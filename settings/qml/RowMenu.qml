import QtQuick
import Lumora

// What can be done with one row of a page, beside what the row itself does.
PopupMenu {
    id: root

    property RowModel row: null // null while the menu is closed
    property list<RowAction> actions: [
        RowAction {
            text: qsTr("Copy Value")
            isFor: row => row.valueText.length > 0
            onChosen: row => Clipboard.copy(row.valueText)
        },
        RowAction {
            text: qsTr("Copy Title")
            isFor: row => row.title.length > 0
            onChosen: row => Clipboard.copy(row.title)
        },
        RowAction {
            text: qsTr("Copy Identifier")
            isFor: row => row.identifier.length > 0
            onChosen: row => Clipboard.copy(row.identifier)
        },
        RowAction {
            text: qsTr("Reset to Default")
            isFor: row => row.canReset
            onChosen: row => row.reset()
        }
    ]
    property var offered: [] // of them, what the row's menu has
    property Item before: null // what had the focus
    property bool byKey: false

    function actionsFor(row) { return Array.from(actions).filter(action => action.isFor(row)) }
    // Beside a row's place; the hand is a point, or null for a key.
    function show(row, place, hand) {
        offered = actionsFor(row);
        if (offered.length === 0)
            return;
        name = row.accessibleName;
        around = place;
        root.hand = hand;
        byKey = hand === null;
        before = Window.activeFocusItem;
        root.row = row;
        takeFocus();
        if (byKey)
            step(1);
    }
    function close() {
        if (!open)
            return;
        row = null;
        before?.forceActiveFocus(byKey ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    open: row !== null
    lines: offered.map(action => ({ text: action.text, enabled: true }))
    aside: width - around.x - around.width
    widest: around.width
    onDismissed: close()
    onLineChosen: line => {
        const action = offered[line];
        const of = row;
        close();
        action.chosen(of);
    }
    onWidthChanged: close()
    onHeightChanged: close()

    FocusRing {
        x: root.around.x
        y: root.around.y
        z: -1
        width: root.around.width
        height: root.around.height
        radius: Theme.rowRadius
    }
}
