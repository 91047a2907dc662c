import QtQuick
import QtTest
import Lumora

// A page that hosts a view: what is drawn of it, and how hands, keys and assistive tools reach it.
PageStage {
    id: root

    PageCase {
        name: "View"
        stage: root

        function open(view) { openPage(view) }
        function colorView(hue, saturation, brightness) {
            return {
                color: "#ebebf1",
                elements: [
                    { label: "Second", frame: Qt.rect(200, 600, 100, 60) },
                    { label: "Brightness", frame: Qt.rect(20, 500, 350, 30),
                      axes: [{ label: "Brightness", value: brightness, reversed: true }] },
                    { label: "First", frame: Qt.rect(50, 600, 100, 60) },
                    { label: "Colour", frame: Qt.rect(20, 95, 350, 400),
                      axes: [{ label: "Hue", value: hue }, { label: "Saturation", value: saturation, vertical: true, reversed: true }] },
                ],
            };
        }
        function elements() { return all(host.item, item => item instanceof Element) }
        function focusedElement() { return elements().find(item => item.activeFocus)?.element.label }
        function ringed() { return elements().filter(item => item.ringed).map(item => item.element.label) }
        function focusOn(label) { elements().find(item => item.element.label === label).forceActiveFocus(Qt.TabFocusReason) }
        function spokenOf(role, name) { return spoken(control => control.role === role && control.name === name)[0] }
        function focusedSliders() { return spoken(control => control.role === Accessible.Slider && control.focused).map(control => control.name) }
        // Where the last touch began and ended.
        function touched() {
            const [began, ended] = bench.touches.slice(-2).map(event => event[0]);
            compare(began[1], "began");
            compare(ended[1], "ended");
            compare([ended[0], ended[2], ended[3]], [began[0], began[2], began[3]]);
            return [Math.round(1000 * ended[2]) / 1000, Math.round(1000 * ended[3]) / 1000];
        }

        // -- what is drawn --

        function test_drawsTheViewAndWhatChangesInIt() {
            const view = x => ({ color: "#00ff00", views: [{ frame: Qt.rect(x, 10, 20, 20), color: "#ff0000" }] });
            open(view(10));
            compare(colorAt(15, 15), "#ff0000");
            compare(colorAt(55, 15), "#00ff00");
            bench.show(view(50));
            compare(colorAt(15, 15), "#00ff00");
            compare(colorAt(55, 15), "#ff0000");
        }
        function test_drawsEveryChangeThatComesBeforeTheNextPicture() {
            const view = (one, other) => ({ color: "#00ff00", views: [{ frame: Qt.rect(0, 0, 20, 20), color: one },
                                                                     { frame: Qt.rect(300, 600, 20, 20), color: other }] });
            open(view("#000000", "#000000"));
            bench.show(view("#ff0000", "#000000"));
            bench.show(view("#ff0000", "#0000ff"));
            compare(colorAt(10, 10), "#ff0000");
            compare(colorAt(310, 610), "#0000ff");
            compare(colorAt(200, 300), "#00ff00");
        }
        function test_redrawsTheWholeViewWhenTheWindowIsResized() {
            open({ color: "#00ff00", views: [{ frame: Qt.rect(380, 0, 5, 5), color: "#ff0000" }] });
            host.anchors.fill = null;
            host.width = 100;
            waitForRendering(host.item);
            host.width = 390;
            bench.show({ color: "#00ff00", views: [{ frame: Qt.rect(380, 0, 5, 5), color: "#0000ff" }] });
            compare(colorAt(382, 2), "#0000ff");
            compare(colorAt(200, 300), "#00ff00");
            host.anchors.fill = root;
        }

        // -- hands --

        function test_handsOnTheMouseFromItsPressToItsRelease() {
            open(colorView(0, 0, 1));
            mouseMove(host.item, 40, 50);
            compare(bench.touches, [], "hovering is no touch");
            mousePress(host.item, 30, 40);
            mouseMove(host.item, 31, 45);
            mouseMove(host.item, 500, 45);
            mouseRelease(host.item, 60, 70);
            compare(bench.touches, [[[-1, "began", 30, 40]], [[-1, "moved", 31, 45]], [[-1, "moved", 500, 45]], [[-1, "ended", 60, 70]]]);
            mouseMove(host.item, 40, 50);
            compare(bench.touches.length, 4);
        }
        function test_handsOnOnlyTheLeftButton() {
            open(colorView(0, 0, 1));
            mouseClick(host.item, 30, 40, Qt.RightButton);
            compare(bench.touches, []);
        }
        function test_handsOnBothPressesOfADoubleClick() {
            open(colorView(0, 0, 1));
            mouseDoubleClickSequence(host.item, 30, 40);
            compare(bench.touches.map(event => event[0][1]), ["began", "ended", "began", "ended"]);
        }
        function test_handsOnTheFingersOfOneEventTogether() {
            open(colorView(0, 0, 1));
            const fingers = touchEvent(host.item);
            const events = [
                () => fingers.press(1, host.item, 30, 40).press(0, host.item, 100, 510),
                () => fingers.move(1, host.item, 32, 42).move(0, host.item, 104, 512),
                () => fingers.move(0, host.item, 108, 512).stationary(1),
                () => fingers.release(0, host.item, 108, 512).stationary(1),
                () => fingers.move(1, host.item, 36, 46),
                () => fingers.release(1, host.item, 36, 46),
            ];
            events.forEach((event, i) => {
                event().commit();
                compare(bench.touches.length, i + 1, "at once, although no picture has been drawn since");
            });
            const told = bench.touches.map(event => event.map(touch => touch.slice(1)));
            compare(told[0].length, 2);
            compare(told[0].slice().sort(), [["began", 100, 510], ["began", 30, 40]]);
            compare(told[1].slice().sort(), [["moved", 104, 512], ["moved", 32, 42]]);
            compare(told.slice(2), [[["moved", 108, 512]], [["ended", 108, 512]], [["moved", 36, 46]], [["ended", 36, 46]]]);
            const numbers = new Set([].concat(...bench.touches).map(touch => touch[0]));
            compare(numbers.size, 2, "two fingers, and no mouse made of them");
        }
        function test_cancelsWhatIsDownWhenTheWindowIsNoLongerAtHand() {
            open(colorView(0, 0, 1));
            mousePress(host.item, 30, 40);
            host.enabled = false;
            compare(bench.touches.map(event => event[0]), [[-1, "began", 30, 40], [-1, "cancelled", 30, 40]]);
            mouseMove(host.item, 50, 40);
            mouseRelease(host.item, 50, 40);
            compare(bench.touches.length, 2);
        }
        function test_cancelsTheFingersThatAreDownTogether() {
            open(colorView(0, 0, 1));
            const fingers = touchEvent(host.item);
            fingers.press(0, host.item, 30, 40).commit();
            fingers.stationary(0).press(1, host.item, 100, 510).commit();
            host.enabled = false;
            compare(bench.touches.length, 3);
            compare(bench.touches[2].map(touch => touch.slice(1)), [["cancelled", 30, 40], ["cancelled", 100, 510]]);
            fingers.release(0, host.item, 30, 40).release(1, host.item, 100, 510).commit();
            compare(bench.touches.length, 3);
        }
        function test_cancelsWhatIsDownWhenThePageGoes() {
            open(colorView(0, 0, 1));
            mousePress(host.item, 30, 40);
            root.shownPage = null;
            tryVerify(() => bench.touches.length === 2);
            compare(bench.touches[1], [[-1, "cancelled", 30, 40]]);
            mouseRelease(root, 30, 40);
        }
        function test_reachesTheViewThroughItsElements() {
            open(colorView(0, 0, 1));
            focusOn("First");
            mouseClick(host.item, 100, 630);
            compare(bench.touches, [[[-1, "began", 100, 630]], [[-1, "ended", 100, 630]]]);
        }

        function test_leavesATableItsOwnInput() {
            open({ sections: [{ header: "Header", rows: [{ title: "A" }, { title: "B" }] }] });
            for (const y of [10, 70, 110, 600])
                mouseClick(host.item, 60, y);
            touchEvent(host.item).press(0, host.item, 60, 70).commit().release(0, host.item, 60, 70).commit();
            compare(bench.touches, []);
        }

        // -- keys --

        function test_goesThroughTheElementsInReadingOrder() {
            open(colorView(0, 0, 1));
            root.before.forceActiveFocus(Qt.OtherFocusReason);
            const order = [];
            for (let i = 0; i < 4; ++i) {
                keyClick(Qt.Key_Tab);
                order.push(focusedElement());
                compare(ringed(), [focusedElement()]);
            }
            compare(order, ["Colour", "Brightness", "First", "Second"]);
            keyClick(Qt.Key_Tab);
            verify(root.after.activeFocus);
            for (const label of order.reverse()) {
                keyClick(Qt.Key_Backtab);
                compare(focusedElement(), label);
            }
            keyClick(Qt.Key_Backtab);
            verify(root.before.activeFocus);
        }
        function test_pressesAButtonInItsMiddle_data() {
            return [{ tag: "Space", press: () => keyClick(Qt.Key_Space) }, { tag: "Return", press: () => keyClick(Qt.Key_Return) },
                    { tag: "Enter", press: () => keyClick(Qt.Key_Enter) },
                    { tag: "assistive tool", press: () => verify(bench.act(host.item, "First", "Press")) }];
        }
        function test_pressesAButtonInItsMiddle(data) {
            open(colorView(0, 0, 1));
            focusOn("First");
            data.press();
            compare(bench.touches.length, 2);
            compare(touched(), [100, 630]);
            keyClick(Qt.Key_Left);
            compare(bench.touches.length, 2);
        }
        function test_movesAMarkByKey_data() {
            return [
                { tag: "Left", key: Qt.Key_Left, at: [191.5, 295] },
                { tag: "Right", key: Qt.Key_Right, at: [198.5, 295] },
                { tag: "Up", key: Qt.Key_Up, at: [195, 291] },
                { tag: "Down", key: Qt.Key_Down, at: [195, 299] },
                { tag: "Shift+Left", key: Qt.Key_Left, with: Qt.ShiftModifier, at: [160, 295] },
                { tag: "Shift+Right", key: Qt.Key_Right, with: Qt.ShiftModifier, at: [230, 295] },
                { tag: "Shift+Up", key: Qt.Key_Up, with: Qt.ShiftModifier, at: [195, 255] },
                { tag: "Shift+Down", key: Qt.Key_Down, with: Qt.ShiftModifier, at: [195, 335] },
                { tag: "Home", key: Qt.Key_Home, at: [20, 295] },
                { tag: "End", key: Qt.Key_End, at: [369.5, 295] },
                { tag: "PageUp", key: Qt.Key_PageUp, at: [195, 255] },
                { tag: "PageDown", key: Qt.Key_PageDown, at: [195, 335] },
            ];
        }
        function test_movesAMarkByKey(data) {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Colour");
            keyClick(data.key, data.with ?? Qt.NoModifier);
            compare(touched(), data.at);
            compare(bench.touches.length, 2);
        }
        function test_movesAMarkAlongItsOneAxisOnly() {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Brightness");
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Down);
            compare(bench.touches, []);
            for (const [key, x] of [[Qt.Key_Right, 198.5], [Qt.Key_PageDown, 233.5], [Qt.Key_End, 369.5], [Qt.Key_Home, 20]]) {
                keyClick(key);
                compare(touched(), [x, 515]);
            }
        }
        function test_keepsTheFocusWhileTheValuesChange() {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Colour");
            bench.show(colorView(0.25, 1, 0.5));
            compare(focusedElement(), "Colour");
            keyClick(Qt.Key_Right);
            compare(touched(), [20 + 0.26 * 350, 95]);
        }
        function test_movesTheFocusToWhatIsTouchedAndShowsItWithTheFirstKey_data() {
            return [{ tag: "mouse", touch: (x, y) => mouseClick(host.item, x, y) },
                    { tag: "finger", touch: (x, y) => touchEvent(host.item).press(0, host.item, x, y).commit().release(0, host.item, x, y).commit() }];
        }
        function test_movesTheFocusToWhatIsTouchedAndShowsItWithTheFirstKey(data) {
            open(colorView(0.5, 0.5, 0.5));
            data.touch(100, 200);
            compare(focusedElement(), "Colour");
            compare(ringed(), []);
            keyClick(Qt.Key_Right);
            compare(touched(), [198.5, 295]);
            compare(ringed(), ["Colour"]);
            data.touch(100, 200);
            compare(ringed(), []);
            keyClick(Qt.Key_Tab);
            compare(ringed(), ["Brightness"]);
            keyClick(Qt.Key_Backtab);
            compare(ringed(), ["Colour"]);
            data.touch(250, 630);
            compare(focusedElement(), "Second");
            compare(ringed(), []);
            keyClick(Qt.Key_Space);
            compare(touched(), [250, 630]);
            compare(ringed(), ["Second"]);
            data.touch(5, 5);
            compare(ringed(), ["Second"], "nothing is there that would take it");
        }

        // -- assistive tools --

        function test_tellsOfButtonsAndQuantities() {
            open(colorView(0.25, 1, 0.5));
            verify(spokenOf(Accessible.Button, "First"));
            verify(spokenOf(Accessible.Button, "Second").focusable);
            compare(spokenOf(Accessible.Grouping, "Colour").description, "Hue 25 %, Saturation 100 %");
            compare(spokenOf(Accessible.Slider, "Hue").number, 0.25);
            compare(spokenOf(Accessible.Slider, "Saturation").number, 1);
            compare(spokenOf(Accessible.Slider, "Brightness").number, 0.5);
            bench.show(colorView(0.75, 0.5, 0.5));
            compare(spokenOf(Accessible.Slider, "Hue").number, 0.75);
            compare(spokenOf(Accessible.Slider, "Saturation").number, 0.5);
        }
        function test_offersNeitherPressNorFocusOnTheGroupAroundASlider() {
            open(colorView(0.25, 1, 0.5));
            for (const name of ["Colour", "Brightness"]) {
                verify(!spokenOf(Accessible.Grouping, name).focusable, name);
                verify(!bench.act(host.item, name, "Press"), name);
            }
            compare(bench.touches, []);
            for (const name of ["Hue", "Saturation", "Brightness"])
                verify(spokenOf(Accessible.Slider, name).focusable, name);
        }
        function test_changesAQuantityByAssistiveAction() {
            open(colorView(0.5, 0.5, 0.5));
            verify(bench.act(host.item, "Hue", "Increase"));
            compare(touched(), [198.5, 295]);
            verify(bench.act(host.item, "Saturation", "Increase"));
            compare(touched(), [198.5, 291]);
            compare(bench.touches.length, 4);
        }
        function test_tellsOfTheFocusOnTheQuantityThatIsMovedAndComesBackToIt() {
            open(colorView(0.5, 0.5, 0.5));
            root.before.forceActiveFocus(Qt.OtherFocusReason);
            for (const [key, slider] of [[Qt.Key_Tab, "Hue"], [Qt.Key_Down, "Saturation"], [Qt.Key_Right, "Hue"],
                                         [Qt.Key_Up, "Saturation"], [Qt.Key_Tab, "Brightness"], [Qt.Key_Backtab, "Saturation"]]) {
                keyClick(key);
                compare(focusedSliders(), [slider]);
            }
            keyClick(Qt.Key_Backtab);
            verify(root.before.activeFocus);
        }
        function test_setsAQuantityByAssistiveTool() {
            open(colorView(0.5, 0.5, 0.5));
            verify(bench.setNumber(host.item, "Hue", 0.1));
            compare(touched(), [55, 295]);
            compare(spokenOf(Accessible.Slider, "Hue").number, 0.1);
            verify(bench.setNumber(host.item, "Saturation", 0));
            compare(touched(), [55, 494.5]);
            fuzzyCompare(spokenOf(Accessible.Slider, "Saturation").number, 0.5 / 400, 1e-9);
            const before = bench.touches.length;
            verify(bench.setNumber(host.item, "Saturation", -1));
            compare(bench.touches.length, before);
            fuzzyCompare(spokenOf(Accessible.Slider, "Saturation").number, 0.5 / 400, 1e-9);
            bench.takeAll();
            compare(spokenOf(Accessible.Slider, "Hue").number, 0.5, "the view has not moved its mark");
        }
    }
}
