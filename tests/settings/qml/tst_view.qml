import QtQuick
import QtTest
import Lumora

// A page that hosts a view: what is drawn of it, and how hands, keys and assistive tools reach it.
PageStage {
    id: root

    DrawnCase {
        name: "View"
        host: root.host

        function cleanup() {
            root.shownPage = null;
            host.enabled = true;
        }
        function open(view) {
            root.shownPage = null;
            root.shownPage = bench.viewPage(view);
            verify(waitForRendering(host.item));
        }
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
        function scroller() { return find(host.item, item => item.scrollTo !== undefined) }
        function shownText() { return find(host.item, item => item.selectByMouse !== undefined) }
        function textView(text, id, selectable) {
            return { color: "#ffffff", text: { id: id ?? 1, frame: Qt.rect(10, 20, 370, 600), text: text, selectable: selectable ?? false } };
        }
        readonly property string manyLines: Array.from({ length: 300 }, (_, i) => "Line " + i).join("\n")

        // -- what is drawn --

        function test_drawsTheViewAndWhatChangesInIt() {
            const view = x => ({ color: "#00ff00", views: [{ frame: Qt.rect(x, 10, 20, 20), color: "#ff0000" }] });
            open(view(10));
            compare(bench.colorAt(host.item, 15, 15), "#ff0000");
            compare(bench.colorAt(host.item, 55, 15), "#00ff00");
            bench.showView(view(50));
            compare(bench.colorAt(host.item, 15, 15), "#00ff00");
            compare(bench.colorAt(host.item, 55, 15), "#ff0000");
        }
        function test_drawsEveryChangeThatComesBeforeTheNextPicture() {
            const view = (one, other) => ({ color: "#00ff00", views: [{ frame: Qt.rect(0, 0, 20, 20), color: one },
                                                                     { frame: Qt.rect(300, 600, 20, 20), color: other }] });
            open(view("#000000", "#000000"));
            bench.showView(view("#ff0000", "#000000"));
            bench.showView(view("#ff0000", "#0000ff"));
            compare(bench.colorAt(host.item, 10, 10), "#ff0000");
            compare(bench.colorAt(host.item, 310, 610), "#0000ff");
            compare(bench.colorAt(host.item, 200, 300), "#00ff00");
        }
        function test_drawsTheWholeViewInANewSizeOfTheWindow() {
            open({ color: "#00ff00", views: [{ frame: Qt.rect(380, 0, 5, 5), color: "#ff0000" }] });
            host.anchors.fill = null;
            host.width = 100;
            waitForRendering(host.item);
            host.width = 390;
            bench.showView({ color: "#00ff00", views: [{ frame: Qt.rect(380, 0, 5, 5), color: "#0000ff" }] });
            compare(bench.colorAt(host.item, 382, 2), "#0000ff");
            compare(bench.colorAt(host.item, 200, 300), "#00ff00");
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
        function test_handsOnTheLeftButtonAlone() {
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
            // At once, although no picture has been drawn since.
            const commit = count => { fingers.commit(); compare(bench.touches.length, count); };
            fingers.press(1, host.item, 30, 40).press(0, host.item, 100, 510);
            commit(1);
            fingers.move(1, host.item, 32, 42).move(0, host.item, 104, 512);
            commit(2);
            fingers.move(0, host.item, 108, 512).stationary(1);
            commit(3);
            fingers.release(0, host.item, 108, 512).stationary(1);
            commit(4);
            fingers.move(1, host.item, 36, 46);
            commit(5);
            fingers.release(1, host.item, 36, 46);
            commit(6);
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
            root.shownPage = bench.tablePage([{ header: "Header", rows: [{ title: "A" }, { title: "B" }] }]);
            verify(waitForRendering(host.item));
            for (const y of [10, 70, 110, 600])
                mouseClick(host.item, 60, y);
            touchEvent(host.item).press(0, host.item, 60, 70).commit().release(0, host.item, 60, 70).commit();
            compare(bench.touches, []);
        }

        // -- keys --

        function test_goesFromElementToElementInTheOrderInWhichOneReads() {
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
        function test_pressesAButtonByKeyInItsMiddle_data() {
            return [{ tag: "Space", key: Qt.Key_Space }, { tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }];
        }
        function test_pressesAButtonByKeyInItsMiddle(data) {
            open(colorView(0, 0, 1));
            focusOn("First");
            keyClick(data.key);
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
        function test_movesAMarkToEveryEdgeAndNotBeyond_data() {
            return [
                { tag: "left", key: Qt.Key_Left, at: [20, 295] }, { tag: "right", key: Qt.Key_Right, at: [369.5, 295] },
                { tag: "top", key: Qt.Key_Up, at: [195, 95] }, { tag: "bottom", key: Qt.Key_Down, at: [195, 494.5] },
            ];
        }
        function test_movesAMarkToEveryEdgeAndNotBeyond(data) {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Colour");
            for (let i = 0; i < 7; ++i)
                keyClick(data.key, Qt.ShiftModifier);
            compare(touched(), data.at);
            const before = bench.touches.length;
            keyClick(data.key);
            compare(bench.touches.length, before);
        }
        function test_movesAMarkAlongItsOneAxisOnly() {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Brightness");
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Down);
            compare(bench.touches, []);
            keyClick(Qt.Key_Right);
            compare(touched(), [198.5, 515]);
            keyClick(Qt.Key_PageDown);
            compare(touched(), [233.5, 515]);
            keyClick(Qt.Key_End);
            compare(touched(), [369.5, 515]);
            keyClick(Qt.Key_Home);
            compare(touched(), [20, 515]);
        }
        function test_keepsTheFocusWhileTheValuesChange() {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Colour");
            bench.showView(colorView(0.25, 1, 0.5));
            compare(focusedElement(), "Colour");
            keyClick(Qt.Key_Right);
            compare(touched(), [20 + 0.26 * 350, 95]);
        }
        function test_takesTheKeyboardWhereTheHandIsAndShowsItWithTheFirstKey_data() {
            return [{ tag: "mouse", touch: (x, y) => mouseClick(host.item, x, y) },
                    { tag: "finger", touch: (x, y) => touchEvent(host.item).press(0, host.item, x, y).commit().release(0, host.item, x, y).commit() }];
        }
        function test_takesTheKeyboardWhereTheHandIsAndShowsItWithTheFirstKey(data) {
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
        function test_comesBackToTheQuantityThatWasMovedLast() {
            open(colorView(0.5, 0.5, 0.5));
            focusOn("Colour");
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Tab);
            compare(focusedElement(), "Brightness");
            keyClick(Qt.Key_Backtab);
            compare(focusedElement(), "Colour");
            compare(focusedSliders(), ["Saturation"]);
            keyClick(Qt.Key_Backtab);
            verify(root.before.activeFocus);
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
            bench.showView(colorView(0.75, 0.5, 0.5));
            compare(spokenOf(Accessible.Slider, "Hue").number, 0.75);
            compare(spokenOf(Accessible.Slider, "Saturation").number, 0.5);
        }
        function test_pressesByAssistiveAction() {
            open(colorView(0.25, 1, 0.5));
            verify(bench.act(host.item, "Second", "Press"));
            compare(touched(), [250, 630]);
        }
        function test_offersNoActionAndNoFocusOnWhatIsNoButton() {
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
        function test_tellsOfTheFocusOnTheQuantityThatIsMoved() {
            open(colorView(0.5, 0.5, 0.5));
            root.before.forceActiveFocus(Qt.OtherFocusReason);
            keyClick(Qt.Key_Tab);
            compare(focusedSliders(), ["Hue"]);
            keyClick(Qt.Key_Down);
            compare(focusedSliders(), ["Saturation"]);
            keyClick(Qt.Key_Right);
            compare(focusedSliders(), ["Hue"]);
            keyClick(Qt.Key_Tab);
            compare(focusedSliders(), ["Brightness"]);
            keyClick(Qt.Key_Backtab);
            compare(focusedSliders(), ["Hue"]);
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

        // -- texts --

        function test_showsATextInItsFrameFromTheTop() {
            open(textView(manyLines));
            compare([scroller().width, scroller().height], [370, 600]);
            compare(scroller().mapToItem(host.item, 0, 0), Qt.point(10, 20));
            compare(scroller().contentY, 0);
            compare(shownText().font.pixelSize, 15);
            compare(shownText().font.family, Application.font.family);
            verify(shownText().readOnly);
        }
        function test_showsTheEndOfATextInAWindowLowerThanTheView() {
            open(textView(manyLines));
            host.anchors.fill = null;
            host.height = 300;
            compare(scroller().height, 280);
            host.item.forceActiveFocus();
            keyClick(Qt.Key_End);
            compare(scroller().contentY, scroller().contentHeight - 280);
            host.height = 10;
            compare(scroller().height, 0);
            host.anchors.fill = root;
            compare(scroller().height, 600);
        }
        function test_laysOutOnlyWhatIsSeenOfALongTextAndTellsAllOfIt() {
            const whole = Array.from({ length: 20000 }, (_, i) => "Line " + i).join("\n");
            open(textView(whole));
            host.item.forceActiveFocus();
            const pieces = () => all(host.item, item => item.selectByMouse !== undefined);
            const at = (piece, y) => piece.mapToItem(scroller(), 0, y).y;
            verify(pieces().some(piece => piece.text.startsWith("Line 0\nLine 1\n") && at(piece, 0) === 0));
            verify(pieces().length < 10);
            const told = spoken(control => control.name.startsWith("Line"));
            compare(told.map(control => control.role), [Accessible.StaticText]);
            compare(told[0].name, whole);
            keyClick(Qt.Key_End);
            tryVerify(() => pieces().some(piece => piece.text.endsWith("\nLine 19999") && at(piece, piece.height) === 600));
            verify(pieces().length < 10);
            for (let i = 0; i < 30; ++i)
                keyClick(Qt.Key_PageUp);
            // Nothing is left out between two pieces, and nothing shown twice.
            const seen = pieces().filter(piece => at(piece, piece.height) > 0 && at(piece, 0) < 600).sort((one, other) => one.y - other.y);
            verify(seen.length > 0);
            verify(whole.includes(seen.map(piece => piece.text).join("\n")));
            for (let i = 1; i < seen.length; ++i)
                compare(seen[i].y, seen[i - 1].y + seen[i - 1].height);
            keyClick(Qt.Key_Home);
            tryVerify(() => pieces().some(piece => piece.text.startsWith("Line 0\n") && at(piece, 0) === 0));
            bench.showView(textView("Short", 2));
            tryVerify(() => pieces().length === 1 && pieces()[0].text === "Short" && at(pieces()[0], 0) === 0);
        }
        function test_showsMarkupAsItIsWritten() {
            open(textView("<b>Bold</b> & plain"));
            compare(shownText().getText(0, 100), "<b>Bold</b> & plain");
        }
        function test_breaksLongLines() {
            open(textView("word ".repeat(400)));
            verify(shownText().lineCount > 10);
            compare(scroller().contentWidth, 370);
        }
        function test_scrollsATextByKeys() {
            open(textView(manyLines));
            host.item.forceActiveFocus();
            const end = scroller().contentHeight - 600;
            keyClick(Qt.Key_Down);
            verify(scroller().contentY > 20);
            keyClick(Qt.Key_Up);
            compare(scroller().contentY, 0);
            keyClick(Qt.Key_Up);
            compare(scroller().contentY, 0);
            keyClick(Qt.Key_PageDown);
            verify(scroller().contentY > 400);
            verify(scroller().contentY < 600);
            keyClick(Qt.Key_PageUp);
            compare(scroller().contentY, 0);
            keyClick(Qt.Key_End);
            compare(scroller().contentY, end);
            keyClick(Qt.Key_PageDown);
            compare(scroller().contentY, end);
            keyClick(Qt.Key_Home);
            compare(scroller().contentY, 0);
        }
        function test_scrollsATextByWheelAndFinger() {
            open(textView(manyLines));
            mouseWheel(scroller(), 100, 100, 0, -120);
            tryVerify(() => scroller().contentY > 0);
            keyClick(Qt.Key_Home);
            const finger = touchEvent(host.item);
            finger.press(0, host.item, 100, 500).commit();
            for (let y = 480; y >= 300; y -= 20)
                finger.move(0, host.item, 100, y).commit();
            finger.release(0, host.item, 100, 300).commit();
            tryVerify(() => scroller().contentY > 50);
            compare(bench.touches, [], "the text has its own use for the finger");
        }
        function test_doesNotScrollAShortText() {
            open(textView("Short"));
            host.item.forceActiveFocus();
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_PageDown);
            compare(scroller().contentY, 0);
        }
        function test_keepsItsPlaceWhileItIsTheSameText() {
            open(textView(manyLines));
            host.item.forceActiveFocus();
            keyClick(Qt.Key_PageDown);
            const place = scroller().contentY;
            bench.showView(textView(manyLines + "\nOne more"));
            compare(scroller().contentY, place);
            bench.showView(textView(manyLines, 2));
            compare(scroller().contentY, 0);
        }
        function test_cannotBeEditedAndIsSelectedOnlyWhenItMayBe() {
            open(textView(manyLines));
            host.item.forceActiveFocus();
            keyClick(Qt.Key_X);
            compare(shownText().text, manyLines);
            keySequence(StandardKey.SelectAll);
            compare(shownText().selectedText.length, 0);
            mouseDoubleClickSequence(host.item, 40, 60);
            compare(shownText().selectedText, "");
            bench.showView(textView(manyLines, 1, true));
            mouseDoubleClickSequence(host.item, 30, 40);
            compare(shownText().selectedText, "Line");
        }
        function test_tellsAssistiveToolsWhatTheTextSays() {
            open(textView("One\nTwo"));
            const told = spokenAs("One\nTwo");
            verify(told);
            compare(told.role, Accessible.StaticText);
            compare(spoken(control => control.name === ""), [], "nothing is told of the scroll bar");
        }
    }
}
