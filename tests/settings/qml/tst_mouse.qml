import QtQuick
import QtTest
import Lumora

// Pages of rows by mouse.
PageStage {
    id: root

    RowsCase {
        name: "Mouse"
        stage: root

        function scroller() { return find(host.item, item => item instanceof Scroller) }
        function bar() { return find(host.item, item => item instanceof PageScrollIndicator) }
        function thumb() { return find(bar(), item => item.radius !== undefined) }
        function links(count) { return Array.from({ length: count }, (_, i) => aLink("Row " + i)) }
        function end() { return scroller().contentHeight - scroller().height }
        function init() {
            beginAsUsual();
            mouseMove(host, 1, host.height - 1);
        }

        function test_tintsARowUnderTheMouse_data() {
            return [{ tag: "link", row: aLink("A") }, { tag: "switch", row: aSwitch("A") }, { tag: "option", row: anOption("A") },
                    { tag: "button", row: aButton("A") }, { tag: "text", row: aText("A"), not: true }, { tag: "field", row: aField("A"), not: true }];
        }
        function test_tintsARowUnderTheMouse(data) {
            open([data.row, aText("Below")]);
            const ground = () => colorAt(200, 24);
            mouseMove(host, 200, 300);
            compare(ground(), Theme.cell.toString());
            mouseMove(host, 200, 40);
            waitForRendering(host.item, 50);
            compare(ground() !== Theme.cell.toString(), !data.not);
            mouseMove(host, 200, 300);
            tryVerify(() => ground() === Theme.cell.toString());
            compare(bench.taps, []);
        }
        function test_scrollsByABarThatTheMouseGrabs() {
            open(links(100));
            mouseMove(host, host.width / 2, 300);
            tryVerify(() => thumb().opacity > 0);
            const place = thumb().mapToItem(host, thumb().width / 2, 10);
            compare(thumb().width, 3);
            mouseMove(host, place.x, place.y);
            tryCompare(thumb(), "width", 7);
            compare(thumb().opacity, 0.6);
            mousePress(host, place.x, place.y);
            for (const y of [100, 200, 300])
                mouseMove(host, place.x, place.y + y);
            const middle = scroller().contentY;
            verify(middle > 1000 && middle < end(), middle);
            fuzzyCompare(thumb().mapToItem(host, 0, 10).y, place.y + 300, 1.5);
            mouseMove(host, place.x - 200, host.height + 100);
            compare(scroller().contentY, end());
            mouseMove(host, place.x, -100);
            compare(scroller().contentY, 0);
            mouseRelease(host, place.x, -100);
            compare(bench.taps, []);
        }
        function test_hasNoBarOnAPageThatFits() {
            open(links(3));
            mouseMove(host, host.width / 2, 300);
            waitForRendering(host.item, 50);
            compare(thumb().opacity, 0);
        }
        function test_leavesTheBarToTheMouse() {
            open(links(100));
            const finger = touchEvent(host);
            const x = host.width - 5;
            finger.press(0, host, x, 10).commit();
            for (const y of [40, 70, 100])
                finger.move(0, host, x, y).commit();
            finger.release(0, host, x, 100).commit();
            verify(scroller().contentY <= 0, "a finger pulls the page down with it");
        }
        function test_leavesWhatIsBeneathTheBarInReach() {
            bench.selectable = bench.plain = true;
            openPage({ sections: [{ rows: Array.from({ length: 100 }, (_, i) => ({ title: "Row " + i })) }] });
            tryVerify(() => bench.viewports.length > 0);
            mouseClick(host, host.width - 5, 600);
            compare(bench.tableTaps.length, 1);
        }
    }
}
