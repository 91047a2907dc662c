import QtQuick
import Lumora

// What tests of a page with a table share.
PageCase {
    readonly property var letters: [
        { header: "Enabled", footer: " ", rows: [{ title: "A" }, { title: "B" }, { title: "C" }] },
        { header: "Disabled", footer: "Drag them.", rows: [{ title: "X" }, { title: "Y" }] },
    ]

    function open(sections) {
        openPage({ sections });
        tryVerify(() => bench.viewports.length > 0);
        tryVerify(() => rows().every(row => row.spokenName.length > 0));
    }
    function show(sections) { bench.show({ sections }) }
    function table() { return find(host.item, item => item instanceof Table) }
    function scroller() { return find(host.item, item => item instanceof TableScroller) }
    function rows() { return all(host.item, item => item instanceof TableSectionRow) }
    function row(title) { return rows().find(item => item.title === title) }
    function enter() {
        stage.before.forceActiveFocus(Qt.OtherFocusReason);
        keyClick(Qt.Key_Tab);
    }
    function numbered(count) { return Array.from({ length: count }, (_, i) => ({ title: "Row " + i })) }
    function many(count) { return [{ header: "Enabled", rows: numbered(count) }] }
    function overlay() { return find(host.item, item => item instanceof LiftedRow) }
    function rowAfter(key) {
        keyClick(key);
        return focusedRow();
    }
    function menu() { return find(host.item, item => item instanceof TableMenu) }
    // What can be chosen in the menu that is open, and in brackets what cannot.
    function menuLines() {
        return all(menu(), item => item instanceof TableMenuLine).map(line => line.enabled ? line.text : `(${line.text})`);
    }
    function menuLine(text) { return find(menu(), item => item instanceof TableMenuLine && item.text === text) }
    function focusedLine() { return find(menu(), item => item instanceof TableMenuLine && item.activeFocus)?.text }
    function focusedRow() { return rows().find(item => item.activeFocus)?.title }
    function ringed() { return rows().filter(item => item.focused).map(item => item.title) }
    // The titles from top to bottom as they stand, the gap as "_", the parts between sections as "|".
    function drawn() {
        const parts = rows().map(item => ({ y: item.y, text: item.empty ? "_" : item.title }));
        for (const header of all(host.item, item => item instanceof GroupHeader))
            parts.push({ y: header.y, text: "|" });
        return parts.sort((one, other) => one.y - other.y).map(part => part.text).join("");
    }
    function middle(title) { return row(title).mapToItem(host.item, row(title).width - 30, 20) }
    // Takes a row by its handle, and carries it so far down.
    function lift(title, by = 0) {
        const hand = { x: middle(title).x, y: middle(title).y };
        mousePress(host.item, hand.x, hand.y);
        if (by !== 0)
            carry(hand, hand.y + by);
        return hand;
    }
    function carry(hand, y) {
        hand.y = y;
        mouseMove(host.item, hand.x, y);
    }
    function letGo(hand) { mouseRelease(host.item, hand.x, hand.y) }
}
