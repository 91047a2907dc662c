import QtQuick
import QtTest
import Lumora

// A page that is pulled down from its beginning, by a finger and by what else scrolls.
PageStage {
    id: root

    SignalSpy {
        id: pulls

        target: root.host.item
        signalName: "pulled"
    }

    RowsCase {
        name: "Pull"
        stage: root

        function openPulled() {
            open(Array.from({ length: 40 }, (_, i) => aSwitch("Row " + i, false)));
            pulls.clear();
        }
        function scroller() { return find(host.item, item => item instanceof Scroller) }
        // From the middle of the page.
        function drag(points) {
            const finger = touchEvent(host.item);
            finger.press(0, host.item, 195, 200).commit();
            for (let way = 10; way <= Math.abs(points); way += 10)
                finger.move(0, host.item, 195, 200 + Math.sign(points) * way).commit();
            return finger;
        }
        function letGo(finger, points) {
            finger.release(0, host.item, 195, 200 + points).commit();
            tryVerify(() => !scroller().moving);
        }

        function test_asksForTheSearchByAFinger() {
            openPulled();
            const finger = drag(300);
            verify(scroller().contentY < -Theme.pullDistance);
            compare(pulls.count, 0);
            letGo(finger, 300);
            compare(pulls.count, 1);
        }
        function test_asksForNothingWhenItIsPulledALittleOrPushedBack() {
            openPulled();
            letGo(drag(60), 60);
            compare(pulls.count, 0);
            const finger = drag(300);
            for (let way = 290; way >= 20; way -= 10)
                finger.move(0, host.item, 195, 200 + way).commit();
            letGo(finger, 20);
            compare(pulls.count, 0);
        }
        function test_asksForNothingFromFartherDown() {
            openPulled();
            scroller().contentY = 400;
            letGo(drag(300), 300);
            compare(pulls.count, 0);
        }
        function test_scrollsByTheWheelAndAsksForNothing() {
            openPulled();
            for (let i = 0; i < 20; ++i)
                mouseWheel(host.item, 195, 200, 0, 120);
            tryVerify(() => !scroller().moving);
            compare(pulls.count, 0);
        }
        function test_scrollsByATouchpadAndAsksForNothing_data() { return [{ tag: "with an end", ends: true }, { tag: "without", ends: false }] }
        function test_scrollsByATouchpadAndAsksForNothing(data) {
            openPulled();
            bench.pullByTouchpad(host.item, 400, data.ends);
            tryVerify(() => scroller().contentY === 0);
            compare(pulls.count, 0);
            // A finger that comes next is one of its own.
            touchEvent(host.item).press(0, host.item, 195, 200).commit().release(0, host.item, 195, 200).commit();
            compare(pulls.count, 0);
            letGo(drag(300), 300);
            compare(pulls.count, 1);
        }
    }
}
