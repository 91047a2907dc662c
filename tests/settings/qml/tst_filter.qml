import QtQuick
import QtTest
import Lumora

// The filter of a long table, with the bench in place of the main thread.
PageStage {
    id: root

    TableCase {
        name: "Filter"
        stage: root

        readonly property var names: Array.from({ length: 40 }, (_, i) => ({ title: ["Äpfel", "Birnen", "Chilis", "Dill"][i % 4] + " " + i }))
        readonly property var longTable: [{ header: "Enabled", rows: names.slice(0, 3) }, { header: "Disabled", rows: names.slice(3) }]

        function filter() { return find(host.item, item => item instanceof TableFilter) }
        function shownTitles() { return rows().slice().sort((one, other) => one.place - other.place).map(item => item.title) }
        function type(text) {
            for (const letter of text)
                keyClick(letter);
        }
        function openLong(selectable) {
            bench.selectable = selectable;
            open(longTable);
            enter();
        }
        function says(text) { return all(host.item, item => item.visible && item.text === text).length > 0 }

        function test_leavesTheRowsWhoseNamesHaveWhatIsTyped() {
            openLong(true);
            compare(filter().height, 0);
            type("dill 3");
            tryVerify(() => shownTitles().join() === "Dill 3,Dill 23,Dill 31,Dill 35,Dill 39");
            verify(says("5 of 40"));
            verify(filter().inUse);
        }
        function test_takesNoNoticeOfAccents() {
            openLong(true);
            type("apfel 1");
            tryVerify(() => shownTitles().join() === "Äpfel 12,Äpfel 16");
        }
        function test_tapsTheRowThatIsSeen() {
            openLong(true);
            type("dill 2");
            tryVerify(() => shownTitles().length === 2);
            keyClick(Qt.Key_Down);
            verify(!filter().inUse);
            keyClick(Qt.Key_Down);
            compare(focusedRow(), "Dill 27");
            keyClick(Qt.Key_Return);
            compare(bench.tableTaps, [[1, 24]]);
            mouseClick(row("Dill 23"), 100, 20);
            compare(bench.tableTaps, [[1, 24], [1, 20]]);
        }
        function test_movesNothingAndSaysWhyUntilItIsCleared() {
            openLong(false);
            verify(row("Birnen 1").movable);
            type("birnen");
            tryVerify(() => shownTitles().length === 10);
            verify(says("Clear the filter to reorder"));
            verify(rows().every(item => !item.movable));
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, []);
            keyClick(Qt.Key_Escape);
            compare([filter().height, table().table.filter], [0, ""]);
            tryVerify(() => row("Birnen 1")?.movable);
            compare(focusedRow(), "Birnen 1");
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, [[0, 1, 0, 2]]);
        }
        function test_saysWhenNothingFits() {
            openLong(true);
            type("zz");
            tryVerify(() => says("Nothing like “zz” here"));
            keyClick(Qt.Key_Escape);
            tryVerify(() => rows().length > 10);
        }
        function test_comesWithAPull() {
            openLong(true);
            const hand = { x: 200, y: 200 };
            mousePress(host.item, hand.x, hand.y);
            for (let i = 1; i <= 20; ++i)
                mouseMove(host.item, hand.x, hand.y + 15 * i);
            mouseRelease(host.item, hand.x, hand.y + 300);
            verify(filter().visible && filter().inUse);
        }
        function test_isNotThereForAFewRows() {
            bench.selectable = true;
            open(letters);
            enter();
            keyClick("b");
            compare([bench.seeks.length, filter().visible], [1, false]);
        }
        function test_givesWayToARowThatOneLandsOn() {
            openLong(true);
            type("dill");
            tryVerify(() => shownTitles().length === 10);
            host.item.land(20);
            compare(table().table.filter, "");
            tryVerify(() => focusedRow() === "Äpfel 20");
        }
    }
}
