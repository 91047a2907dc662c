import QtQuick
import QtTest
import Lumora

// A finger that goes back from the edge of a page.
Item {
    id: root

    property int backs: 0
    property int gone: 0

    width: 390
    height: 700

    Loader {
        id: loader

        anchors.fill: parent
        active: false
        sourceComponent: PageStack {
            swipes: true
            onSwipedBack: ++root.backs
            onGone: ++root.gone
        }
    }

    DrawnCase {
        id: test

        name: "Swipe"
        host: loader

        property PageStack stack: loader.item as PageStack
        property var finger: null
        property point at // where it is

        function init() {
            beginAsUsual();
            root.backs = root.gone = 0;
        }
        function cleanup() { host.active = false }

        function rows(count) { return { rows: Array.from({ length: count }, (_, i) => ({ cell: RowModel.LinkCell, name: "Row " + i })) } }
        function open(...contents) {
            host.active = true;
            for (const content of contents)
                stack.push(bench.page(content), false);
            verify(waitForRendering(stack));
        }
        function page(index) { return stack.pageAt(index) }
        // A finger that comes down at a place and goes by so much, in steps.
        function press(x, y = 300) {
            finger = touchEvent(stack);
            finger.press(0, stack, x, y).commit();
            at = Qt.point(x, y);
        }
        function move(by, down = 0, steps = 5) {
            for (let i = 0; i < steps; ++i) {
                at = Qt.point(at.x + by / steps, at.y + down / steps);
                finger.move(0, stack, at.x, at.y).commit();
            }
        }
        function rest() { wait(120) } // until the finger has no speed
        function lift() { finger.release(0, stack, at.x, at.y).commit() }
        function swipe(by) {
            press(5);
            move(by);
            rest();
            lift();
        }

        function test_takesThePageAlongAndShowsTheOneBeneath() {
            open(rows(3), rows(3));
            press(5);
            move(10, 0, 1);
            verify(!page(0).visible || page(1).x <= 2, "not at once");
            const first = at.x;
            move(150);
            compare(page(1).x, at.x - first);
            fuzzyCompare(page(0).x, -0.3 * (390 - page(1).x), 0.01);
            verify(page(0).visible);
            compare(root.backs, 0);
            move(-100);
            compare(page(1).x, at.x - first, "and back with the finger");
            rest();
            lift();
        }
        function test_goesBackFromAThirdOnElseReturns_data() {
            return [{ tag: "less", by: 150, backs: 0 }, { tag: "more", by: 180, backs: 1 }];
        }
        function test_goesBackFromAThirdOnElseReturns(data) {
            open(rows(3), rows(3));
            swipe(data.by);
            compare(root.backs, data.backs);
            compare(page(1).x, data.backs ? 390 : 0);
            compare(page(0).visible, data.backs === 1);
            compare(bench.taps, []);
        }
        function test_goesBackWithSpeedAndReturnsWithSpeed() {
            open(rows(3), rows(3));
            const run = by => {
                for (let i = 0; i < 5; ++i) {
                    wait(5);
                    move(by / 5, 0, 1);
                }
            };
            press(5);
            run(80);
            lift();
            compare(root.backs, 1);
            stack.stay();
            press(5);
            move(300);
            rest();
            run(-80);
            lift();
            compare(root.backs, 1);
            compare(page(1).x, 0);
        }
        function test_leavesThePagesAsThePopDoes_data() { return [{ tag: "animated", animated: true }, { tag: "at once", animated: false }] }
        function test_leavesThePagesAsThePopDoes(data) {
            Theme.animated = data.animated;
            open(rows(3), rows(3));
            swipe(200);
            stack.popTo(1, true);
            tryCompare(root, "gone", 1);
            compare(page(0).x, 0);
            verify(page(0).visible && page(0).enabled && page(0).activeFocus);
        }
        function test_isThereAgainWhenItWasNotPopped() {
            open(rows(3), rows(3));
            swipe(200);
            compare(page(1).x, 390);
            stack.stay();
            compare(page(1).x, 0);
            verify(!page(0).visible);
        }
        function test_glidesOnFromWhereTheFingerLetsGo() {
            Theme.animated = true;
            open(rows(3), rows(3));
            swipe(200);
            tryCompare(page(1), "x", 390);
            compare(root.backs, 1);
            stack.stay();
            tryCompare(page(1), "x", 0);
            tryCompare(page(0), "visible", false);
        }
        function test_giveWayToAnotherPageThatComesMeanwhile() {
            open(rows(3), rows(3));
            swipe(200);
            stack.push(bench.page(rows(1)), false);
            compare([page(2).x, page(2).visible, page(1).x, page(1).visible, page(0).visible], [0, true, 0, false, false]);
        }
        function test_beginsAtTheEdgeAloneAndGoesAcross_data() {
            return [{ tag: "beside the edge", x: 30, by: 200, down: 0 }, { tag: "down", x: 5, by: 100, down: 150 }, { tag: "outwards", x: 15, by: -14, down: 2 }];
        }
        function test_beginsAtTheEdgeAloneAndGoesAcross(data) {
            open(rows(3), rows(40));
            press(data.x);
            move(data.by, data.down);
            compare(page(1).x, 0);
            move(200);
            compare(page(1).x, 0, "nor later");
            lift();
            compare(root.backs, 0);
        }
        function test_staysOnTheFirstPageAndUnderWhatCoversIt_data() { return [{ tag: "first", pages: 1, swipes: true }, { tag: "covered", pages: 2, swipes: false }] }
        function test_staysOnTheFirstPageAndUnderWhatCoversIt(data) {
            open(...Array(data.pages).fill(rows(3)));
            stack.swipes = data.swipes;
            swipe(300);
            compare(root.backs, 0);
            compare(page(data.pages - 1).x, 0);
        }
        function test_returnsWhenAnotherFingerComesOrThePageIsCovered_data() {
            return [{ tag: "another finger", act: () => finger.stationary(0).press(1, stack, 200, 500).commit() }, { tag: "covered", act: () => stack.swipes = false }];
        }
        function test_returnsWhenAnotherFingerComesOrThePageIsCovered(data) {
            open(rows(3), rows(30));
            press(5);
            move(250);
            data.act();
            compare(page(1).x, 0);
            if (data.tag === "another finger")
                finger.move(0, stack, 350, 300).move(1, stack, 200, 510).commit();
            compare(page(1).x, 0);
            if (data.tag === "another finger")
                finger.stationary(0).release(1, stack, 200, 510).commit();
            lift();
            compare([root.backs, bench.taps], [0, []]);
            stack.swipes = true;
            swipe(250);
            compare(root.backs, 1, "the next finger does");
        }
        function test_leavesTapsNearTheEdgeToTheRows() {
            open(rows(3), rows(3));
            press(18, 40);
            lift();
            compare(bench.taps, [0]);
        }
        function test_letsNoRowThinkThatItIsStillPressed() {
            open(rows(3), rows(3));
            press(18, 40);
            const row = find(page(1), item => item instanceof LinkRow);
            verify(row.down);
            move(100);
            verify(!row.down);
            rest();
            lift();
            compare(bench.taps, []);
            press(18, 40);
            lift();
            compare(bench.taps, [0]);
        }
        function test_leavesAnElementItsFinger() {
            open(rows(3), { elements: [{ label: "Field", frame: Qt.rect(10, 100, 300, 300), axes: [{ label: "Hue", value: 0.5 }] }] });
            press(18, 300);
            move(200);
            rest();
            lift();
            compare(page(1).x, 0);
            compare(root.backs, 0);
            compare(bench.touches.length, 7);
        }
        function test_takesAFingerAwayFromAViewThatHasNothingThere() {
            open(rows(3), { views: [], color: "white" });
            press(15);
            move(200);
            rest();
            lift();
            compare(root.backs, 1);
            compare(bench.touches.map(points => points.map(point => point[1])), [["began"], ["cancelled"]]);
        }
        function test_isLeftToTheListBesideThePage() {
            open(rows(3), rows(3), rows(3));
            stack.listWidth = 150;
            press(5);
            move(140);
            rest();
            lift();
            compare(root.backs, 0);
            press(155);
            move(120);
            compare(page(1).x, 0, "the list stays");
            verify(page(2).x > 80);
            rest();
            lift();
            compare(root.backs, 1);
        }
    }
}
