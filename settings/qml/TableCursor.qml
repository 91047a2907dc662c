import QtQuick
import Lumora

// The current row of a table: keys, assistive tools and the mouse choose it, tap it and move it.
QtObject {
    id: root

    required property TableModel table
    required property TableScroller scroller
    required property LiftedRow hand
    required property TableMenu menu
    required property TableFilter filter
    required property Item list // the table, which has the focus while the row has it
    property bool shown: false  // from the use of a key until that of the mouse
    property int landedOn: -1   // the row that has been shown, until another one is current
    property string remark      // what assistive tools are told of it first
    property string typed       // the letters of the last second
    property int typedAt: 0     // the current row when the first of them was typed
    signal focusWanted // for the current row
    signal menuWanted  // for the current row

    function go(place) {
        shown = true;
        if (filter.inUse)
            filter.release();
        table.current = Math.max(0, Math.min(table.total - 1, place));
        scroller.reveal();
    }
    function tap(place) {
        if (!hand.inHand)
            table.tap(place);
    }
    function move(place, goal) {
        if (hand.inHand)
            return;
        hand.settle();
        table.current = place;
        table.move(place, goal);
        list.forceActiveFocus(Qt.OtherFocusReason);
        scroller.reveal();
    }
    // By hand, `at` is where that is, on what scrolls; or else it is null.
    function openMenu(place, name, at) {
        if (hand.inHand)
            return;
        hand.settle();
        table.current = place;
        list.forceActiveFocus(Qt.PopupFocusReason);
        scroller.reveal();
        menu.show(place, name, at);
        if (shown)
            menu.step(1);
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
        } else if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)) {
            takeMenu(event);
        } else if (event.modifiers & Qt.AltModifier) {
            takeMove(event);
        } else if (isLetter(event)) {
            takeLetter(event);
        } else if ([Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)) {
            takeTap(event);
        } else {
            takeStep(event);
        }
    }
    function takeMenu(event) {
        shown = true;
        menuWanted();
    }
    function takeMove(event) {
        const goals = event.modifiers & Qt.ShiftModifier
            ? new Map([[Qt.Key_Up, TableModel.SectionAbove], [Qt.Key_Down, TableModel.SectionBelow]])
            : new Map([[Qt.Key_Up, TableModel.Up], [Qt.Key_Down, TableModel.Down],
                       [Qt.Key_Home, TableModel.Top], [Qt.Key_End, TableModel.End]]);
        event.accepted = goals.has(event.key);
        if (!event.accepted)
            return;
        shown = true;
        move(table.current, goals.get(event.key));
    }
    // Space is a letter of names that have begun, unless it taps.
    function isLetter(event) {
        if (event.modifiers & (Qt.ControlModifier | Qt.MetaModifier) || event.text.length === 0)
            return false;
        return event.key === Qt.Key_Space ? !table.selectable && typed.length > 0 : event.text > " " && event.text !== "\x7f";
    }
    // Of a few rows, letters find the next one; of many, all that have them.
    function takeLetter(event) {
        if (table.filterable) {
            filter.begin(event.text);
            return;
        }
        if (typed.length === 0)
            typedAt = table.current;
        typed += event.text;
        forgetting.restart();
        shown = true;
        table.seek(typed, typedAt);
    }
    function takeTap(event) {
        event.accepted = table.selectable;
        if (!event.accepted || Keyboard.repeats())
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
        if (!event.accepted)
            return;
        typed = "";
        go(targets.get(event.key));
    }

    readonly property Timer forgetting: Timer {
        interval: Theme.typingTime
        onTriggered: root.typed = ""
    }
    // The row that letters have found.
    readonly property Connections stepping: Connections {
        target: root.table
        function onCurrentChanged() {
            if (root.table.current !== root.landedOn)
                root.landedOn = -1;
            if (root.typed.length > 0)
                root.scroller.reveal();
        }
    }
}
