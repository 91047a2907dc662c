import QtQuick
import QtTest
import Lumora

// A table by keyboard and by assistive tools.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    TableCase {
        name: "TableKeys"
        stage: root

        function init() {
            beginAsUsual();
            root.escapes = 0;
        }

        function spokenRows() { return spoken(control => control.role === Accessible.ListItem) }
        function spokenFocus() { return spokenRows().filter(control => control.focused).map(control => control.name) }

        // -- by keyboard --

        function test_takesKeysWhenItOpensAndShowsTheFocusOnceOneIsUsed() {
            open(letters);
            host.item.forceActiveFocus(Qt.OtherFocusReason);
            compare(focusedRow(), "A");
            compare(ringed(), []);
            compare(rowAfter(Qt.Key_Tab), "A");
            compare(ringed(), ["A"]);
            keyClick(Qt.Key_Tab);
            verify(root.after.activeFocus);
        }
        function test_staysWhereItIsWhenTheFocusComesBackByItself() {
            open(many(200));
            letGo(lift("Row 1"));
            scroller().contentY = 3000;
            host.enabled = false;
            host.enabled = true;
            root.before.forceActiveFocus(Qt.OtherFocusReason);
            host.item.forceActiveFocus(Qt.ActiveWindowFocusReason);
            verify(table().activeFocus);
            compare(scroller().contentY, 3000);
            compare(ringed(), []);
            enter();
            compare(focusedRow(), "Row 1");
            compare(ringed(), ["Row 1"]);
            verify(scroller().contentY < 100, "a key reveals it");
        }
        function test_movesARowWhoseCellHasNotComeAndFocusesItOnceItHasAName() {
            open(many(300));
            enter();
            bench.busy = true;
            for (let i = 0; i < 6; ++i)
                keyClick(Qt.Key_PageDown);
            const from = table().table.current;
            compare(focusedRow(), undefined);
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(bench.moves, [[0, from, 0, from - 1]]);
            bench.busy = false;
            bench.takeAll();
            tryVerify(() => focusedRow() === "Row " + from);
            compare(table().table.current, from - 1);
        }
        function test_isOneStopForTab() {
            open(letters);
            enter();
            compare(focusedRow(), "A");
            compare(ringed(), ["A"]);
            keyClick(Qt.Key_Tab);
            verify(root.after.activeFocus);
            compare(rowAfter(Qt.Key_Backtab), "A");
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Backtab);
            verify(root.before.activeFocus);
            compare(rowAfter(Qt.Key_Tab), "B");
        }
        function test_walksOverTheRowsOfAllSections() {
            open(letters);
            enter();
            compare(focusedRow(), "A");
            for (const title of ["B", "C", "X", "Y", "Y"])
                compare(rowAfter(Qt.Key_Down), title);
            compare(rowAfter(Qt.Key_Home), "A");
            compare(rowAfter(Qt.Key_Up), "A");
            compare(rowAfter(Qt.Key_End), "Y");
            compare(rowAfter(Qt.Key_Up), "X");
            compare(bench.moves, []);
        }
        function test_walksByPages() {
            open(many(100));
            enter();
            keyClick(Qt.Key_PageDown);
            tryVerify(() => focusedRow() === "Row 16");
            keyClick(Qt.Key_PageDown);
            tryVerify(() => focusedRow() === "Row 32");
            verify(scroller().contentY > 0);
            keyClick(Qt.Key_PageUp);
            keyClick(Qt.Key_PageUp);
            keyClick(Qt.Key_PageUp);
            tryVerify(() => focusedRow() === "Row 0");
            compare(scroller().contentY, 0);
        }
        function test_movesARowByKeyboardAcrossTheBorderAndKeepsTheFocusOnIt() {
            open(letters);
            enter();
            keyClick(Qt.Key_End);
            const seen = [drawn()];
            for (let i = 0; i < 6; ++i) {
                keyClick(Qt.Key_Up, Qt.AltModifier);
                compare(focusedRow(), "Y");
                compare(ringed(), ["Y"]);
                seen.push(drawn());
            }
            compare(seen, ["|ABC|XY", "|ABC|YX", "|ABCY|X", "|ABYC|X", "|AYBC|X", "|YABC|X", "|YABC|X"]);
            compare(bench.moves, [[1, 1, 1, 0], [1, 0, 0, 3], [0, 3, 0, 2], [0, 2, 0, 1], [0, 1, 0, 0]]);
            bench.takeAll();
            compare(drawn(), "|YABC|X");
            compare(focusedRow(), "Y");
        }
        function test_movesARowToTheEndsOfItsSectionByKeyboard() {
            open(letters);
            enter();
            keyClick(Qt.Key_Home, Qt.AltModifier);
            compare(bench.moves, [], "it is there");
            keyClick(Qt.Key_End, Qt.AltModifier);
            compare(bench.moves, [[0, 0, 0, 2]]);
            compare(drawn(), "|BCA|XY");
            compare(ringed(), ["A"]);
            keyClick(Qt.Key_Home, Qt.AltModifier);
            compare(bench.moves[1], [0, 2, 0, 0]);
            compare(drawn(), "|ABC|XY");
        }
        function test_movesARowIntoTheOtherSectionByKeyboard() {
            open(letters);
            enter();
            keyClick(Qt.Key_Up, Qt.AltModifier | Qt.ShiftModifier);
            compare(bench.moves, [], "there is no section above");
            keyClick(Qt.Key_Down, Qt.AltModifier | Qt.ShiftModifier);
            compare(bench.moves, [[0, 0, 1, 0]]);
            compare(drawn(), "|BC|AXY");
            compare(focusedRow(), "A");
            keyClick(Qt.Key_Down, Qt.AltModifier | Qt.ShiftModifier);
            compare(bench.moves.length, 1);
            keyClick(Qt.Key_End, Qt.AltModifier);
            keyClick(Qt.Key_Up, Qt.AltModifier | Qt.ShiftModifier);
            compare(bench.moves[2], [1, 2, 0, 2]);
            compare(drawn(), "|BCA|XY");
            compare(ringed(), ["A"]);
        }

        // -- letters --

        function test_seeksANameByLettersWithinASecond() {
            open(letters);
            enter();
            for (const letter of ["m", "A"])
                keyClick(letter);
            compare(bench.seeks, [["m", 0, 0], ["mA", 0, 0]]);
            compare(bench.moves, []);
            tryCompare(table().cursor, "typed", "", 3000);
            keyClick("y");
            compare(bench.seeks[2], ["y", 0, 0]);
        }
        function test_beginsANameAnewAfterAnotherKey() {
            open(letters);
            enter();
            keyClick("m");
            keyClick(Qt.Key_Down);
            keyClick("c");
            compare(bench.seeks, [["m", 0, 0], ["c", 0, 1]]);
        }
        function test_takesSpaceForALetterOfANameThatHasBegunWhereItTapsNothing() {
            open(letters);
            enter();
            keyClick(Qt.Key_Space);
            compare(bench.seeks, []);
            keyClick("a");
            keyClick(Qt.Key_Space);
            keyClick("b");
            compare(bench.seeks.map(seek => seek[0]), ["a", "a ", "a b"]);
            compare(bench.tableTaps, []);
        }
        function test_tapsWithSpaceRightAfterALetterWhereRowsAreChosen() {
            bench.selectable = true;
            open(letters);
            enter();
            keyClick("a");
            keyClick(Qt.Key_Space);
            compare(bench.seeks.length, 1);
            compare(bench.tableTaps, [[0, 0]]);
        }
        function test_takesNoLetterForANameWithCtrlOrAlt() {
            open(letters);
            enter();
            keyClick("a", Qt.ControlModifier);
            keyClick("a", Qt.AltModifier);
            keyClick(Qt.Key_Delete);
            compare(bench.seeks, []);
        }
        function test_showsTheFoundRowAndTheHeaderAboveTheFirst() {
            // Few rows have no filter, and yet fill more than the view.
            const sections = numbered(14).map(row => ({ header: "Of " + row.title, footer: "", rows: [row] }));
            open(sections);
            enter();
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 13");
            keyClick("r");
            bench.askToScroll(0, 0);
            show(sections);
            tryVerify(() => focusedRow() === "Row 0");
            compare(ringed(), ["Row 0"]);
            compare(scroller().contentY, 0);
        }

        function test_movesTheLastRowIntoAnEmptySectionByKeyboard() {
            open([{ header: "Enabled", rows: [{ title: "A" }] }, { header: "Disabled" }]);
            enter();
            keyClick(Qt.Key_Up, Qt.AltModifier);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, [[0, 0, 1, 0]]);
            compare(drawn(), "||A");
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(bench.moves[1], [1, 0, 0, 0]);
        }
        function test_movesNoRowThatIsFixed() {
            open([{ header: "Enabled", rows: [{ title: "A", fixed: true }, { title: "B" }] }]);
            enter();
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, []);
        }
        function test_keepsAMovedRowInView() {
            open(many(60));
            enter();
            for (let i = 0; i < 30; ++i)
                keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(focusedRow(), "Row 0");
            const place = rows().find(item => item.activeFocus).mapToItem(host.item, 0, 0).y;
            verify(scroller().contentY > 0);
            verify(place >= 0 && place + 40 <= 700, "at " + place);
            bench.takeAll();
            compare(focusedRow(), "Row 0");
        }
        function test_keepsTheFocusWhenASnapshotComesAndWhenItScrollsAway() {
            open(many(200));
            enter();
            keyClick(Qt.Key_Down);
            const focused = rows().find(item => item.activeFocus);
            show(many(200));
            verify(focused.activeFocus);
            scroller().contentY = 5000;
            tryVerify(() => rows().some(item => item.title === "Row 125"));
            verify(focused.activeFocus, "the same item has the focus");
            compare(focused.title, "Row 1");
            compare(rowAfter(Qt.Key_Down), "Row 2");
            verify(scroller().contentY < 100, "back to where the focus is");
        }
        function test_isSkippedByTabWhileItHasNoRows() {
            open([{ header: "Enabled" }, { header: "Disabled" }]);
            enter();
            verify(root.after.activeFocus);
        }

        // -- assistive tools --

        function test_speaksOfTheListItsRowsHeadersAndFooters() {
            open([{ header: "Enabled", footer: " ", rows: [{ title: "A", identifier: "a" }, { identifier: "gone" }] },
                  { header: "Disabled", footer: "Drag them.", rows: [{ title: "X", identifier: "x", fixed: true }] }]);
            const told = bench.spoken(host.item);
            const list = told.findIndex(control => control.role === Accessible.List);
            compare(told[list].name, "Bench");
            compare(told.slice(list + 1, list + 7).map(control => control.name),
                    ["Enabled", "A", "gone", "Disabled", "X", "Drag them."]);
            compare(told[list + 1].role, spokenAs("Disabled").role);
            compare(spokenAs("A").description, "Position 1 of 2 in Enabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("gone").description, "Position 2 of 2 in Enabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("X").description, "Position 1 of 1 in Disabled.");
            compare(spokenRows().map(control => control.name), ["A", "gone", "X"]);
            verify(spokenRows().every(control => control.focusable));
        }
        function test_movesARowOnceByAssistiveAction() {
            open(letters);
            verify(bench.act(host.item, "C", "Move down"));
            compare(bench.moves, [[0, 2, 1, 0]]);
            compare(focusedRow(), "C");
            compare(spokenAs("C").description, "Position 1 of 3 in Disabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("C").focused, true);
            verify(bench.act(host.item, "C", "Move up"));
            compare(bench.moves.length, 2);
            compare(bench.moves[1], [1, 0, 0, 3 - 1]);
            compare(focusedRow(), "C");
        }
        function test_opensTheMenuByAssistiveActionAndSpeaksOfItsLines() {
            open(letters);
            verify(bench.act(host.item, "B", "ShowMenu"));
            compare(spoken(control => control.role === Accessible.PopupMenu).map(control => control.name), ["B"]);
            const lines = spoken(control => control.role === Accessible.MenuItem);
            compare(lines.map(line => line.name), ["Move Up", "Move Down", "To Top", "To Disabled"]);
            compare(lines.filter(line => line.focused).map(line => line.name), ["Move Up"]);
            verify(bench.act(host.item, "To Disabled", "Press"));
            compare(bench.moves, [[0, 1, 1, 0]]);
        }
        function test_speaksOfTheFocusedRowAsItWalksAndAsARowMoves() {
            open(letters);
            enter();
            keyClick(Qt.Key_Down);
            compare(spokenFocus(), ["B"]);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(spokenFocus(), ["B"]);
        }
    }
}
