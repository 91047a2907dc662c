import QtQuick
import QtTest
import Lumora

// Pages and tables that a finger throws.
PageStage {
    id: root

    TableCase {
        name: "Flick"
        stage: root

        readonly property int count: 200
        property var finger: null
        property real at // where it is

        function kinds() { return [{ tag: "rows" }, { tag: "table" }] }
        function begin(data) {
            bench.selectable = bench.plain = true;
            const names = Array.from({ length: count }, (_, i) => i);
            openPage(data.tag === "rows" ? { rows: names.map(name => ({ cell: RowModel.LinkCell, name: "Row " + name })) }
                                         : { sections: [{ rows: names.map(name => ({ title: "Row " + name })) }] });
        }
        function view() { return find(host.item, item => item instanceof Scroller) }
        function end() { return view().contentHeight - view().height }
        function taps() { return bench.taps.length + bench.tableTaps.length }
        // From one place to another, in so many steps with a pause after each.
        function drag(from, to, steps, pause) {
            finger = touchEvent(host.item);
            finger.press(0, host.item, 200, from).commit();
            for (let i = 1; i <= steps; ++i) {
                wait(pause);
                finger.move(0, host.item, 200, from + (to - from) * i / steps).commit();
            }
            at = to;
        }
        function lift() { finger.release(0, host.item, 200, at).commit() }
        function fling(by) {
            const middle = 350;
            drag(middle + by / 2, middle - by / 2, 6, 10);
            lift();
        }
        function awaitRest() {
            tryVerify(() => !view().moving, 10000);
            return view().contentY;
        }

        function test_goesOnAfterTheFingerFurtherTheFasterItWas_data() { return kinds() }
        function test_goesOnAfterTheFingerFurtherTheFasterItWas(data) {
            begin(data);
            fling(120);
            const slow = awaitRest();
            verify(slow > 120, slow);
            fling(600);
            const fast = awaitRest() - slow;
            verify(fast > 600 + 2 * (slow - 120), [slow, fast]);
            compare(taps(), 0);
        }
        function test_movesWithTheFingerAndRestsWhereOneHasPaused_data() { return kinds() }
        function test_movesWithTheFingerAndRestsWhereOneHasPaused(data) {
            begin(data);
            drag(500, 300, 10, 5);
            const held = view().contentY;
            verify(held >= 150 && held <= 200, held);
            wait(150);
            lift();
            compare(awaitRest(), held);
        }
        function test_givesWayAtAnEndAndComesBack_data() { return kinds() }
        function test_givesWayAtAnEndAndComesBack(data) {
            begin(data);
            drag(200, 500, 10, 5);
            verify(view().contentY < -20 && view().contentY > -200, view().contentY);
            wait(150);
            lift();
            compare(awaitRest(), 0);
        }
        function test_runsOverTheEndAndComesBackToIt_data() { return kinds() }
        function test_runsOverTheEndAndComesBackToIt(data) {
            begin(data);
            view().contentY = end() - 300;
            let furthest = 0;
            const note = () => furthest = Math.max(furthest, view().contentY);
            view().contentYChanged.connect(note);
            fling(600);
            compare(awaitRest(), end());
            view().contentYChanged.disconnect(note);
            verify(furthest > end() + 5, furthest - end());
        }
        function test_stopsUnderATapThatOpensNothing_data() { return kinds() }
        function test_stopsUnderATapThatOpensNothing(data) {
            begin(data);
            fling(600);
            const from = view().contentY;
            tryVerify(() => view().contentY > from + 50);
            verify(view().flicking);
            const tap = touchEvent(host.item);
            tap.press(0, host.item, 200, 300).commit();
            const stopped = view().contentY;
            tap.release(0, host.item, 200, 300).commit();
            verify(!view().flicking);
            verify(Math.abs(awaitRest() - stopped) < 5);
            compare(taps(), 0);
            wait(Application.styleHints.mouseDoubleClickInterval + 50); // or else it would be the second half of a double click
            tap.press(0, host.item, 200, 300).commit();
            tap.release(0, host.item, 200, 300).commit();
            tryVerify(() => taps() === 1, 5000, "the next one opens what is there");
        }
    }
}
