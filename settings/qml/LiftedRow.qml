import QtQuick
import Lumora

// The row in the user's hand, above all others, until it has landed.
TableRow {
    id: root

    required property TableModel table
    required property TableScroller scroller
    readonly property bool inHand: table.lifted >= 0
    readonly property alias landingPlace: landing.place // of the row that is landing, or -1
    property real rowTop: 0
    property real pointer: 0 // where the hand is, from the top of what is seen
    property real grip: 0    // from the top of the row to the hand
    property real highest: 0 // where the hand has been
    property real lowest: 0

    visible: inHand || landing.running
    x: scroller.columnX
    y: rowTop - scroller.contentY
    width: scroller.columnWidth
    first: true
    last: true
    down: true
    boxed: table.grouped

    onTableChanged: settle()

    function lift(from, y) {
        settle();
        scroller.cancelFlick();
        table.lift(from.place);
        if (!inHand)
            return;
        for (const part of ["title", "titleFont", "icon", "marked", "movable", "editingStyle", "indented", "height", "rowTop"])
            root[part] = from[part];
        grip = y + scroller.contentY - rowTop;
        highest = lowest = y;
        carry(y);
    }
    function carry(y) {
        if (!inHand)
            return;
        pointer = Math.max(0, Math.min(scroller.height, y));
        highest = Math.min(highest, pointer);
        lowest = Math.max(lowest, pointer);
        rowTop = pointer + scroller.contentY - grip;
        table.carry(rowTop);
    }
    function drop() {
        if (!inHand)
            return;
        table.drop();
        land();
    }
    function putBack() {
        if (!inHand)
            return;
        table.putBack();
        land();
    }
    function land() {
        if (!Theme.animated)
            return;
        landing.place = table.current;
        landing.to = table.topOf(table.current);
        landing.restart();
    }
    // Ends the landing at once.
    function settle() {
        landing.stop();
        landing.place = -1;
    }

    MoveAnimation {
        id: landing

        property int place: -1

        target: root
        property: "rowTop"
        onFinished: place = -1
    }
    // Near its edges the table scrolls, the faster the nearer the hand is. A hand that only presses there, and has not
    // moved towards the edge, does not scroll.
    FrameAnimation {
        readonly property real edge: Math.min(60, root.scroller.height / 4)
        readonly property bool upwards: root.lowest - root.pointer >= 4
        readonly property bool downwards: root.pointer - root.highest >= 4
        readonly property real depth: upwards && root.pointer < edge ? root.pointer / edge - 1
            : downwards && root.pointer > root.scroller.height - edge ? (root.pointer - root.scroller.height) / edge + 1 : 0

        running: root.inHand && depth !== 0
        onTriggered: {
            root.scroller.scrollTo(root.scroller.contentY + 1400 * depth * Math.abs(depth) * Math.min(frameTime, 0.1));
            root.carry(root.pointer);
        }
    }
}
