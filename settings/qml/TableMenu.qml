import QtQuick
import Lumora

// What can be done with one row of a table.
PopupMenu {
    id: root

    required property TableModel table
    required property TableScroller scroller
    property int place: -1 // of the row; -1 while the menu is closed
    readonly property int total: table.total
    // Only one of the two sections is another one than the row's.
    readonly property var moves: place < 0 ? [] : Array.from([
        { text: qsTr("Move Up"), goal: TableModel.Up },
        { text: qsTr("Move Down"), goal: TableModel.Down },
        { text: qsTr("To Top"), goal: TableModel.Top },
        { header: table.headerOf(place, TableModel.SectionAbove), goal: TableModel.SectionAbove },
        { header: table.headerOf(place, TableModel.SectionBelow), goal: TableModel.SectionBelow },
    ]).filter(move => move.header !== "")
    signal chosen(int place, int goal)
    signal closed

    open: place >= 0
    lines: moves.map(move => ({ text: move.text ?? qsTr("To %1").arg(move.header), enabled: table.canMove(place, move.goal) }))
    around: Qt.rect(scroller.columnX, table.topOf(place) - scroller.contentY, scroller.columnWidth, table.heightOf(place))
    aside: scroller.columnX + (table.grouped ? 0 : Theme.inset)
    widest: scroller.columnWidth

    function show(place, name, hand) {
        root.name = name;
        root.hand = hand;
        root.place = place;
        takeFocus();
    }
    function close() {
        if (!open)
            return;
        place = -1;
        closed();
    }

    onDismissed: close()
    onLineChosen: line => {
        const from = place;
        const goal = moves[line].goal;
        close();
        chosen(from, goal);
    }
    // It may be another row's place by then.
    onTableChanged: close()
    onTotalChanged: close()
    Connections {
        target: root.table
        function onSectionsChanged() { root.close() }
    }
}
