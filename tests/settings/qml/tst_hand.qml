import QtQuick
import QtTest
import Lumora

// Rows of a table in the user's hand.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    TableCase {
        name: "Hand"
        stage: root

        function places() { return rows().map(item => [item.title, item.y]).sort() }

        function test_movesARowToWhereItIsDropped_data() {
            return [
                { tag: "down by two", title: "A", by: 80, during: "|BC_|XY", after: "|BCA|XY", move: [0, 0, 0, 2] },
                { tag: "up by one", title: "B", by: -40, during: "|_AC|XY", after: "|BAC|XY", move: [0, 1, 0, 0] },
                { tag: "to the other section", title: "A", onto: "X", during: "|BC|_XY", after: "|BC|AXY", move: [0, 0, 1, 0] },
                { tag: "back to the first section", title: "Y", onto: "B", during: "|A_BC|X", after: "|AYBC|X", move: [1, 1, 0, 1] },
                { tag: "far beyond the end", title: "A", by: 5000, during: "|BC|XY_", after: "|BC|XYA", move: [0, 0, 1, 2] },
                { tag: "far above the beginning", title: "X", by: -5000, during: "|_ABC|Y", after: "|XABC|Y", move: [1, 0, 0, 0] },
                { tag: "its own place", title: "B", by: 3, during: "|A_C|XY", after: "|ABC|XY", move: [0, 1, 0, 1] },
            ];
        }
        function test_movesARowToWhereItIsDropped(data) {
            open(letters);
            const hand = lift(data.title);
            // Once the row is out, what is beneath it has moved up.
            const by = data.onto ? middle(data.onto).y - hand.y - (data.title === "A" ? 40 : 0) : data.by;
            const start = hand.y;
            for (const part of [0.3, 0.6, 1])
                carry(hand, start + by * part);
            compare(drawn(), data.during);
            compare(bench.moves, []);
            verify(overlay().visible);
            letGo(hand);
            compare(bench.moves, [data.move]);
            compare(drawn(), data.after);
            verify(!overlay().visible);
            bench.takeAll();
            compare(drawn(), data.after);
            compare(focusedRow(), data.title);
            compare(ringed(), []);
        }
        function test_movesARowIntoAnEmptySectionAndOutOfOneAndMakesRoomWhereItWillStand() {
            open([{ header: "Enabled", footer: " " }, { header: "Disabled", rows: [{ title: "X" }, { title: "Y" }] }]);
            let hand = lift("Y");
            carry(hand, 60);
            compare(drawn(), "|_|X");
            const during = places();
            letGo(hand);
            compare(bench.moves, [[1, 1, 0, 0]]);
            compare(places(), during);
            bench.takeAll();
            compare(places(), during);
            hand = lift("X");
            carry(hand, 60);
            letGo(hand);
            compare(bench.moves[1].slice(0, 3), [1, 0, 0]);
            bench.takeAll();
            compare(rows().length, 2);
            hand = lift(rows()[0].title);
            carry(hand, 690);
            letGo(hand);
            compare(bench.moves[2], [0, 0, 1, 0]);
        }
        function test_saysThatASectionIsEmptyOnceItsOnlyRowIsCarriedOut() {
            const placeholders = () => all(host.item, item => item instanceof DashedBox);
            open([{ header: "Enabled", footer: " ", rows: [{ title: "A" }] }, { header: "Disabled", rows: [{ title: "X" }] }]);
            const x = row("X").y;
            const hand = lift("A", 110);
            compare(placeholders().length, 1);
            compare(row("X").y, x + 40, "the placeholder has the room of the row, and the gap has its own");
            letGo(hand);
            compare(bench.moves, [[0, 0, 1, 0]]);
            compare(placeholders().length, 1);
        }
        function test_castsAShadowFromTheRowInTheHand() {
            open(letters);
            const shadow = () => find(host.item, item => item instanceof Shadow && item.visible);
            compare(shadow(), null);
            const beside = () => colorAt(row("A").x - 2, overlay().y + 30);
            const before = colorAt(row("A").x - 2, row("A").y + 30);
            const hand = lift("A", 80);
            verify(shadow() !== null);
            verify(Qt.color(beside()).r < Qt.color(before).r, beside() + " beside it, " + before + " before");
            letGo(hand);
            compare(shadow(), null);
        }
        function test_movesARowByTouch() {
            open(letters);
            const hand = middle("A");
            const finger = touchEvent(host.item);
            finger.press(0, host.item, hand.x, hand.y).commit();
            for (const by of [20, 40, 60, 80])
                finger.move(0, host.item, hand.x, hand.y + by).commit();
            tryVerify(() => drawn() === "|BC_|XY");
            compare(scroller().contentY, 0, "the page does not scroll instead");
            finger.release(0, host.item, hand.x, hand.y + 80).commit();
            compare(bench.moves, [[0, 0, 0, 2]]);
        }
        function test_liftsByTheHandleOnly() {
            open([{ header: "Enabled", rows: [{ title: "A" }, { title: "Fixed", fixed: true }] }]);
            mousePress(host.item, 100, row("A").y + 20);
            verify(!overlay().visible);
            mouseRelease(host.item, 100, row("A").y + 20);
            const hand = lift("Fixed");
            verify(!overlay().visible);
            letGo(hand);
            compare(bench.moves, []);
        }
        function test_putsTheRowBackWithEscapeAndMovesNothing() {
            open(letters);
            const hand = lift("A", 80);
            compare(drawn(), "|BC_|XY");
            keyClick(Qt.Key_Escape);
            compare(drawn(), "|ABC|XY");
            carry(hand, hand.y - 10);
            letGo(hand);
            compare(bench.moves, []);
            compare(root.escapes, 0, "the page stays");
            keyClick(Qt.Key_Escape);
            compare(root.escapes, 1);
        }
        function test_putsTheRowBackWhenThePageIsCoveredOrAsksForIt_data() {
            return [{ tag: "waiting", begin: page => page.enabled = false }, { tag: "covered", begin: page => page.visible = false },
                    { tag: "asking", begin: page => page.putBack() }];
        }
        function test_putsTheRowBackWhenThePageIsCoveredOrAsksForIt(data) {
            open(letters);
            const hand = lift("A", 80);
            data.begin(host.item);
            verify(!overlay().inHand);
            letGo(hand);
            host.item.enabled = host.item.visible = true;
            compare(bench.moves, []);
            compare(drawn(), "|ABC|XY");
        }
        function test_keepsARowInTheHandWhenASnapshotComes() {
            open(letters);
            const hand = lift("A", 80);
            show(letters);
            compare(drawn(), "|BC_|XY");
            letGo(hand);
            compare(bench.moves, [[0, 0, 0, 2]]);
        }
        function test_letsGoOfARowThatASnapshotNoLongerHas() {
            open(letters);
            const hand = lift("Y");
            show([letters[0], { header: "Disabled", rows: [{ title: "X" }] }]);
            verify(!overlay().inHand);
            letGo(hand);
            compare(bench.moves, []);
            compare(drawn(), "|ABC|X");
        }
        function test_keepsTheUsersOrderUntilEveryMoveHasArrived() {
            open(letters);
            letGo(lift("A", 80));
            show(letters); // from before the move
            compare(drawn(), "|BCA|XY");
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(drawn(), "|BAC|XY");
            show(letters);
            compare(drawn(), "|BAC|XY");
            bench.takeAll();
            compare(drawn(), "|BAC|XY");
            show(letters);
            compare(drawn(), "|ABC|XY", "the page has thought better of it");
        }
        function test_scrollsAtTheEdgesWhileARowIsInTheHand() {
            open([{ header: "Enabled", rows: numbered(200) }, { header: "Disabled", rows: numbered(2) }]);
            const hand = lift("Row 5");
            carry(hand, 650);
            tryVerify(() => scroller().contentY > 20);
            carry(hand, 699);
            tryVerify(() => scroller().contentY > 2500, 20000);
            verify(rows().length < 45);
            tryVerify(() => rows().filter(item => item.y > scroller().contentY && item.title.length > 0).length > 10);
            carry(hand, 350);
            const stopped = scroller().contentY;
            letGo(hand);
            compare(scroller().contentY, stopped);
            compare(bench.moves.length, 1);
            verify(bench.moves[0][3] > 60, "dropped at " + bench.moves[0]);
            compare(focusedRow(), "Row 5");
            bench.takeAll();
            compare(focusedRow(), "Row 5");
        }
        function test_letsTheOthersGlideAndTheRowComeDownWhenAnimated() {
            Theme.animated = true;
            open(letters);
            const hand = lift("A", 40);
            const place = row("A").y;
            verify(row("B").y > place - 40);
            tryVerify(() => row("B").y === place - 40);
            letGo(hand);
            verify(overlay().visible);
            tryVerify(() => !overlay().visible);
            compare(drawn(), "|BAC|XY");
        }
        function test_doesNotScrollForAPressNearAnEdge_data() {
            return [{ tag: "bottom", y: 690, away: -30, scrolled: y => y > 420 }, { tag: "top", y: 10, away: 30, scrolled: y => y < 380 }];
        }
        function test_doesNotScrollForAPressNearAnEdge(data) {
            open(many(200));
            scroller().contentY = 400;
            tryVerify(() => rows().some(item => item.y > 1100 && item.spokenName.length > 0));
            mousePress(host.item, 340, data.y);
            verify(overlay().inHand);
            for (let frame = 0; frame < 10; ++frame)
                waitForRendering(host.item, 20);
            compare(scroller().contentY, 400);
            mouseMove(host.item, 340, data.y + data.away);
            mouseMove(host.item, 340, data.y);
            tryVerify(() => data.scrolled(scroller().contentY));
            mouseMove(host.item, 340, 350);
            mouseRelease(host.item, 340, 350);
        }
        function test_endsALandingForTheNextHandOrKey_data() {
            return [{ tag: "key" }, { tag: "hand" }];
        }
        function test_endsALandingForTheNextHandOrKey(data) {
            Theme.animated = true;
            open(letters);
            letGo(lift("A", 80));
            verify(overlay().visible);
            if (data.tag === "key") {
                keyClick(Qt.Key_Down, Qt.AltModifier);
                verify(!overlay().visible);
            } else {
                const hand = lift("Y");
                compare(rows().filter(item => item.empty).map(item => item.title), ["Y"]);
                letGo(hand);
                tryVerify(() => !overlay().visible);
            }
            compare(rows().filter(item => item.empty).length, 0);
        }
        function test_putsTheRowBackWhenTheNumberOfSectionsChanges() {
            open(letters);
            const hand = lift("A", 80);
            show([letters[0]]);
            verify(!overlay().inHand);
            compare(drawn(), "|ABC");
            letGo(hand);
            compare(bench.moves, []);
            show([]);
            compare(drawn(), "");
            compare([table().table.topOf(0), table().table.heightOf(0)], [0, 0]);
            show(letters);
            compare(drawn(), "|ABC|XY");
        }
        function test_keepsTheFocusWhileARowIsInTheHand() {
            open(letters);
            const hand = lift("B");
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Backtab);
            compare(focusedRow(), "B");
            compare(ringed(), []);
            letGo(hand);
        }
    }
}
