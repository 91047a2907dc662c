import QtQuick
import Lumora

// What can be done with one row of a table: a small sheet above the rows. It takes all input until something is chosen;
// a tap beside it and Escape only close it.
FocusScope {
    id: root

    required property TableModel table
    required property TableScroller scroller
    property int place: -1 // of the row; -1 while the menu is closed
    property string name   // of the row
    readonly property alias box: box
    readonly property bool open: place >= 0
    readonly property int total: table.total
    readonly property int gap: 4 // to the row
    readonly property real rowBottom: table.topOf(place) + table.heightOf(place) - scroller.contentY
    readonly property real rowTop: table.topOf(place) - scroller.contentY
    readonly property bool hasRoomBelow: rowBottom + gap + box.height <= height
    signal chosen(int place, int goal)
    signal closed

    visible: open

    function show(place, name) {
        root.name = name;
        root.place = place;
        box.forceActiveFocus(Qt.PopupFocusReason);
    }
    function close() {
        if (!open)
            return;
        place = -1;
        closed();
    }
    function choose(goal) {
        const from = place;
        close();
        chosen(from, goal);
    }
    // Only one of the two sections is another one than the row's.
    function lines() {
        const all = Array.from([
            { text: qsTr("Move Up"), goal: TableModel.Up },
            { text: qsTr("Move Down"), goal: TableModel.Down },
            { text: qsTr("To Top"), goal: TableModel.Top },
            { header: table.headerOf(place, TableModel.SectionAbove), goal: TableModel.SectionAbove },
            { header: table.headerOf(place, TableModel.SectionBelow), goal: TableModel.SectionBelow },
        ]);
        return all.filter(line => line.header !== "");
    }
    // To the next line that can be chosen, and around the ends.
    function step(by) {
        const lines = Array.from({ length: repeater.count }, (_, i) => repeater.itemAt(i)).filter(line => line.enabled);
        if (lines.length === 0)
            return;
        const at = lines.findIndex(line => line.activeFocus);
        const next = at < 0 ? (by > 0 ? 0 : lines.length - 1) : (at + by + lines.length) % lines.length;
        lines[next].forceActiveFocus(Qt.PopupFocusReason);
        flick.show(lines[next].y, lines[next].y + lines[next].height);
    }

    // It may be another row's place by then.
    onTableChanged: close()
    onTotalChanged: close()
    Connections {
        target: root.table
        function onSectionsChanged() { root.close() }
    }
    // The shortcut for going back would take the key first.
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
    Keys.onPressed: event => {
        const steps = new Map([[Qt.Key_Down, 1], [Qt.Key_Tab, 1], [Qt.Key_Up, -1], [Qt.Key_Backtab, -1]]);
        if (event.key === Qt.Key_Escape)
            close();
        else if (steps.has(event.key))
            step(steps.get(event.key));
        event.accepted = true;
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: root.close()
        onWheel: wheel => wheel.accepted = true
    }
    Shadow { anchors.fill: box }
    Rectangle {
        id: box

        anchors { right: parent.right; rightMargin: root.scroller.columnX + (root.table.grouped ? 0 : Theme.inset) }
        y: root.hasRoomBelow ? root.rowBottom + root.gap : Math.max(0, Math.min(root.height - height, root.rowTop - root.gap - height))
        width: Math.min(root.scroller.columnWidth, 14 * Theme.bodySize)
        height: Math.min(root.height, lines.height)
        radius: Theme.rowRadius
        color: Theme.cell
        border { width: 1; color: Theme.hairline }
        antialiasing: true
        Accessible.role: Accessible.PopupMenu
        Accessible.name: root.name

        Scroller {
            id: flick

            anchors.fill: parent
            contentHeight: lines.height

            Column {
                id: lines

                width: parent.width

                Repeater {
                    id: repeater

                    model: root.open ? root.lines() : []

                    TableMenuLine {
                        required property var modelData
                        required property int index

                        width: lines.width
                        enabled: root.table.canMove(root.place, modelData.goal)
                        text: modelData.text ?? qsTr("To %1").arg(modelData.header)
                        last: index === repeater.count - 1
                        onChosen: root.choose(modelData.goal)
                    }
                }
            }
        }
    }
}
