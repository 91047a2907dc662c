import QtQuick
import Lumora

// The current row of a table: keys, assistive tools and the mouse choose it, tap it and move it.
QtObject {
    id: root

    required property TableModel table
    required property TableScroller scroller
    required property LiftedRow hand
    required property Item list // the table, which has the focus while the row has it
    property bool shown: false  // from the use of a key until that of the mouse
    signal focusWanted // for the current row

    function go(place) {
        shown = true;
        table.current = Math.max(0, Math.min(table.total - 1, place));
        scroller.reveal();
    }
    function tap(place) {
        if (!hand.inHand)
            table.tap(place);
    }
    function step(place, by) {
        if (hand.inHand)
            return;
        hand.settle();
        table.current = place;
        table.step(place, by);
        shown = true;
        list.forceActiveFocus(Qt.OtherFocusReason);
        scroller.reveal();
    }
    function click(place) {
        shown = false;
        tap(place);
        list.forceActiveFocus(Qt.MouseFocusReason);
    }
    function lift(row, y) {
        shown = false;
        hand.lift(row, y);
        if (hand.inHand)
            list.forceActiveFocus(Qt.MouseFocusReason);
    }

    function takeKey(event) {
        if (hand.inHand) {
            if (event.key === Qt.Key_Escape)
                hand.putBack();
            event.accepted = true;
        } else if (table.current < 0) {
            event.accepted = false;
        } else if (event.modifiers & Qt.AltModifier) {
            takeMove(event);
        } else if ([Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)) {
            takeTap(event);
        } else {
            takeStep(event);
        }
    }
    function takeMove(event) {
        event.accepted = [Qt.Key_Up, Qt.Key_Down].includes(event.key);
        if (event.accepted)
            step(table.current, event.key === Qt.Key_Down ? 1 : -1);
    }
    function takeTap(event) {
        event.accepted = table.selectable;
        if (!event.accepted || event.isAutoRepeat)
            return;
        go(table.current);
        tap(table.current);
    }
    function takeStep(event) {
        const aPage = Math.max(1, Math.floor(list.height / table.heightOf(table.current)) - 1);
        const targets = new Map([
            [Qt.Key_Down, table.current + 1], [Qt.Key_Up, table.current - 1],
            [Qt.Key_PageDown, table.current + aPage], [Qt.Key_PageUp, table.current - aPage],
            [Qt.Key_Home, 0], [Qt.Key_End, table.total - 1],
        ]);
        event.accepted = targets.has(event.key);
        if (event.accepted)
            go(targets.get(event.key));
    }
}
