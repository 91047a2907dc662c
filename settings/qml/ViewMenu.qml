import QtQuick
import Lumora

// What the window shows side by side, to choose from. Takes all input until something is chosen; a tap beside it and
// Escape only close it.
FocusScope {
    id: root

    required property Panes panes
    property bool hasLockScreen: false
    property bool showsLockScreen: false
    property real menuTop: 0 // its place, from the top and from the end
    property real menuEnd: 0
    signal lockScreenChosen
    signal closed

    readonly property list<TableMenuLine> lines: [one, two, lock]

    function step(by) {
        const all = Array.from(lines).filter(line => line.visible);
        const at = all.findIndex(line => line.focus);
        all[(at + by + all.length) % all.length].forceActiveFocus(Qt.PopupFocusReason);
    }
    function choose(columns) {
        panes.columns = columns;
        closed();
    }

    Component.onCompleted: (panes.columns === 1 ? one : two).forceActiveFocus(Qt.PopupFocusReason)

    // The shortcut for going back would take the key first.
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
    Keys.onPressed: event => {
        const steps = new Map([[Qt.Key_Down, 1], [Qt.Key_Tab, 1], [Qt.Key_Up, -1], [Qt.Key_Backtab, -1]]);
        if (event.key === Qt.Key_Escape)
            closed();
        else if (steps.has(event.key))
            step(steps.get(event.key));
        event.accepted = true;
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: root.closed()
        onWheel: wheel => wheel.accepted = true
    }
    Shadow { anchors.fill: box }
    Rectangle {
        id: box

        anchors { right: parent.right; rightMargin: root.menuEnd }
        y: root.menuTop
        width: Math.min(parent.width, 13 * Theme.bodySize)
        height: column.height
        radius: Theme.rowRadius
        color: Theme.cell
        border { width: 1; color: Theme.hairline }
        antialiasing: true
        Accessible.role: Accessible.PopupMenu
        Accessible.name: qsTr("View")

        Column {
            id: column

            width: parent.width

            TableMenuLine {
                id: one

                width: parent.width
                text: qsTr("One Column")
                checkable: true
                checked: root.panes.columns === 1
                onChosen: root.choose(1)
            }
            TableMenuLine {
                id: two

                width: parent.width
                text: qsTr("Two Columns")
                checkable: true
                checked: root.panes.columns === 2
                last: !lock.visible
                onChosen: root.choose(2)
            }
            TableMenuLine {
                id: lock

                visible: root.hasLockScreen
                width: parent.width
                text: qsTr("Lock Screen")
                checkable: true
                checked: root.showsLockScreen
                last: true
                onChosen: {
                    root.closed();
                    root.lockScreenChosen();
                }
            }
        }
    }
}
