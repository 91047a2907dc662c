import QtQuick
import QtTest
import Lumora

// The menu of a table's row.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    TableCase {
        name: "TableMenu"
        stage: root

        function init() {
            beginAsUsual();
            root.escapes = 0;
        }

        function test_opensAMenuByKeyWithTheFocusInIt_data() {
            return [{ tag: "Menu", key: Qt.Key_Menu, modifiers: Qt.NoModifier }, { tag: "Shift+F10", key: Qt.Key_F10, modifiers: Qt.ShiftModifier }];
        }
        function test_opensAMenuByKeyWithTheFocusInIt(data) {
            open(letters);
            enter();
            keyClick(data.key, data.modifiers);
            compare(menuLines(), ["(Move Up)", "Move Down", "(To Top)", "To Disabled"]);
            compare(focusedLine(), "Move Down");
            compare(ringed(), ["A"], "it says whose menu it is");
        }
        function test_doesWhatIsChosenInTheMenuAsOneMoveAndGoesOnWithTheRow_data() {
            return [
                { tag: "up", row: "B", line: "Move Up", move: [0, 1, 0, 0] }, { tag: "down", row: "B", line: "Move Down", move: [0, 1, 0, 2] },
                { tag: "top", row: "C", line: "To Top", move: [0, 2, 0, 0] }, { tag: "disable", row: "B", line: "To Disabled", move: [0, 1, 1, 0] },
                { tag: "enable", row: "Y", line: "To Enabled", move: [1, 1, 0, 3] },
            ];
        }
        function test_doesWhatIsChosenInTheMenuAsOneMoveAndGoesOnWithTheRow(data) {
            open(letters);
            enter();
            while (focusedRow() !== data.row)
                keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Menu);
            for (let i = 0; i < 5 && focusedLine() !== data.line; ++i)
                keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(bench.moves, [data.move]);
            verify(!menu().open);
            compare(focusedRow(), data.row);
            compare(ringed(), [data.row]);
        }
        function test_walksAroundTheLinesThatCanBeChosen() {
            open(letters);
            enter();
            keyClick(Qt.Key_Menu);
            const seen = [Qt.Key_Down, Qt.Key_Down, Qt.Key_Up, Qt.Key_Tab, Qt.Key_Backtab].map(key => {
                keyClick(key);
                return focusedLine();
            });
            compare(seen, ["To Disabled", "Move Down", "To Disabled", "Move Down", "To Disabled"]);
            keyClick("x");
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare([bench.seeks, bench.moves], [[], []], "the rows behind hear nothing");
        }
        function test_closesTheMenuAloneWithEscapeAndGivesTheFocusBack() {
            open(letters);
            enter();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Menu);
            keyClick(Qt.Key_Escape);
            verify(!menu().open);
            compare(focusedRow(), "B");
            compare(root.escapes, 0, "the page stays");
            keyClick(Qt.Key_Escape);
            compare(root.escapes, 1);
            compare(bench.moves, []);
        }
        function test_opensTheMenuByHand_data() {
            const at = title => row(title).mapToItem(host.item, 100, 20);
            return [
                { tag: "right button", act: () => mouseClick(host.item, at("X").x, at("X").y, Qt.RightButton) },
                { tag: "right button on the handle", act: () => mouseClick(host.item, middle("X").x, middle("X").y, Qt.RightButton) },
                { tag: "long press", act: () => {
                    mousePress(host.item, at("X").x, at("X").y);
                    tryVerify(() => menu().open);
                    mouseRelease(host.item, at("X").x, at("X").y);
                } },
                { tag: "long touch", act: () => {
                    const finger = touchEvent(host.item);
                    finger.press(0, host.item, at("X").x, at("X").y).commit();
                    tryVerify(() => menu().open);
                    finger.release(0, host.item, at("X").x, at("X").y).commit();
                } },
            ];
        }
        function test_opensTheMenuByHand(data) {
            open(letters);
            data.act();
            verify(menu().open);
            compare(menuLines(), ["Move Up", "Move Down", "(To Top)", "To Enabled"]);
            compare(focusedLine(), undefined);
            waitForRendering(host.item); // by then each line has its place
            const line = menuLine("To Enabled").mapToItem(host.item, 20, 20);
            mouseClick(host.item, line.x, line.y);
            compare(bench.moves, [[1, 0, 0, 3]]);
            verify(!menu().open);
            compare(ringed(), []);
            compare(focusedRow(), "X");
        }
        function test_opensTheMenuOnceForAClickOfTheRightButton() {
            open(letters);
            mouseClick(host.item, 100, row("C").y + 20, Qt.RightButton);
            keyClick(Qt.Key_Escape);
            verify(!menu().open);
            wait(Application.styleHints.mousePressAndHoldInterval + 200);
            verify(!menu().open);
        }
        function test_closesTheMenuByATapBesideItThatDoesNothingElse() {
            open(letters);
            mouseClick(host.item, 100, row("A").y + 20, Qt.RightButton);
            verify(menu().open);
            const hand = lift("Y");
            verify(!menu().open);
            verify(!overlay().inHand);
            letGo(hand);
            compare(bench.moves, []);
        }
        function test_opensNoMenuForAPressOnTheHandleOrOneThatScrolls() {
            open(many(200));
            const hand = lift("Row 3");
            verify(overlay().inHand, "at once");
            wait(Application.styleHints.mousePressAndHoldInterval + 200);
            verify(!menu().open);
            letGo(hand);
            mousePress(host.item, 100, 400);
            for (let y = 380; y > 200; y -= 20) {
                mouseMove(host.item, 100, y);
                waitForRendering(host.item, 20);
            }
            wait(Application.styleHints.mousePressAndHoldInterval + 200);
            verify(!menu().open);
            mouseRelease(host.item, 100, 200);
        }
        function test_hasNoMenuForARowThatCannotBeMoved() {
            open([{ header: "Enabled", rows: [{ title: "A", fixed: true }, { title: "B" }] }]);
            enter();
            keyClick(Qt.Key_Menu);
            verify(!menu().open);
            mouseClick(host.item, 100, row("A").y + 20, Qt.RightButton);
            verify(!menu().open);
        }
        function test_keepsTheMenuInViewBeneathTheRowOrAboveIt() {
            open(many(200));
            enter();
            const box = () => menu().box;
            keyClick(Qt.Key_Menu);
            compare(box().y, row("Row 0").y + 40 + 4);
            keyClick(Qt.Key_Escape);
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 199");
            keyClick(Qt.Key_Menu);
            const top = row("Row 199").mapToItem(host.item, 0, 0).y;
            compare(box().y + box().height, top - 4);
        }
        function test_closesTheMenuWhenTheTableChangesOrThePageIsCovered() {
            for (const end of [() => show([letters[0]]), () => host.item.enabled = false]) {
                open(letters);
                enter();
                keyClick(Qt.Key_Menu);
                verify(menu().open);
                end();
                verify(!menu().open);
            }
        }
    }
}
