import QtQuick
import QtTest
import Lumora

// Sliders, and the numbers beside them.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    RowsCase {
        name: "Sliders"
        stage: root

        function numbers() { return bench.changes.map(change => change[1]) }
        function number() { return find(host.item, item => item instanceof SliderNumber).label }

        function test_handsOnASliderOnlyWhenItIsReleased() {
            open([aSlider(0, 1, 0)]);
            const s = slider();
            mousePress(s, 14, s.height / 2);
            for (let x = 20; x <= s.width / 2; x += 10)
                mouseMove(s, x, s.height / 2);
            verify(s.value > 0.2, "the knob follows the hand");
            compare(bench.changes.length, 0);
            mouseRelease(s, s.width / 2, s.height / 2);
            compare(bench.changes.length, 1);
            fuzzyCompare(bench.changes[0][1], s.value, 1e-5);
        }
        function test_handsOnTheBoundsOfASliderThatIsDraggedBeyondItsEnds_data() {
            return [{ tag: "opacity", min: 0, max: 1 }, { tag: "icon size", min: 50, max: 90 },
                    { tag: "button diameter", min: -15, max: 15 }, { tag: "button spacing", min: 0, max: 3 },
                    { tag: "time font size", min: 10, max: 150 }, { tag: "date subtitle font size", min: 5, max: 50 },
                    { tag: "date view offset", min: -10, max: 50 }];
        }
        function test_handsOnTheBoundsOfASliderThatIsDraggedBeyondItsEnds(data) {
            open([aSlider(data.min, data.max, (data.min + data.max) / 2, true)]);
            const s = slider();
            function drag(from, to) {
                mousePress(s, from, s.height / 2);
                for (let step = 1; step <= 4; ++step)
                    mouseMove(s, from + (to - from) * step / 4, s.height / 2);
                mouseRelease(s, to, s.height / 2);
            }
            drag(s.width / 2, -8);
            compare(bench.changes, [[0, data.min]]);
            drag(14, s.width + 8);
            compare(bench.changes, [[0, data.min], [0, data.max]]);
        }
        function test_handsOnEachKeyStepOfASliderWithoutRoundingNoise() {
            open([aSlider(0, 1, 0.1)]);
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Left);
            compare(numbers(), [0.15, 0.2, 0.15]);
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Right);
            compare(numbers(), [0.15, 0.2, 0.15, 1], "nothing beyond the end");
        }
        function test_landsOnMultiplesOfTheStep_data() {
            return [
                { tag: "icon size", min: 50, max: 90, value: 66.507937, right: 68, left: 66, fine: 66.6, many: 74 },
                { tag: "time font size", min: 10, max: 150, value: 87.5, right: 90, left: 85, fine: 88, many: 105 },
                { tag: "button diameter", min: -15, max: 15, value: -0.4, right: 0, left: -1, fine: -0.3, many: 3 },
                { tag: "opacity", min: 0, max: 1, value: 0.333, right: 0.35, left: 0.3, fine: 0.34, many: 0.5 },
                { tag: "hours", min: 1, max: 24, value: 6, right: 7, left: 5, fine: 6.1, many: 10 },
                { tag: "little room", min: 0.01, max: 0.05, value: 0.0303, right: 0.032, left: 0.03, fine: 0.0304, many: 0.038 },
                { tag: "much room", min: 0, max: 1e9, value: 123456789, right: 1.5e8, left: 1e8, fine: 1.25e8, many: 3e8 },
            ];
        }
        function test_landsOnMultiplesOfTheStep(data) {
            function press(...key) {
                open([aSlider(data.min, data.max, data.value, true)]);
                slider().forceActiveFocus(Qt.TabFocusReason);
                keyClick(...key);
                compare(bench.changes.length, 1);
                return numbers()[0];
            }
            compare([press(Qt.Key_Right), press(Qt.Key_Left), press(Qt.Key_Right, Qt.ShiftModifier), press(Qt.Key_PageUp)],
                    [data.right, data.left, data.fine, data.many]);
        }
        function test_storesTheNumberThatItShows_data() {
            return [{ tag: "one decimal", min: 50, max: 90 }, { tag: "two decimals", min: 0, max: 3 },
                    { tag: "around nought", min: -15, max: 15 }, { tag: "few digits", min: 0, max: 3e8 }];
        }
        function test_storesTheNumberThatItShows(data) {
            open([aSlider(data.min, data.max, data.min, true)]);
            const s = slider();
            for (let x = 40; x < s.width - 20; x += 13) {
                const knob = s.handle.x + s.handle.width / 2;
                mousePress(s, knob, s.height / 2);
                mouseMove(s, (knob + x) / 2, s.height / 2);
                mouseMove(s, x, s.height / 2);
                const label = number().text;
                mouseRelease(s, x, s.height / 2);
                compare(numbers().pop(), Number(label));
                compare(number().text, label);
                compare(s.value, Number(label));
            }
            compare(bench.changes.length, Math.ceil((s.width - 60) / 13), "one for each drag");
        }
        function test_showsWhatIsStoredBeyondTheBoundsAsItIs_data() {
            return [{ tag: "above", value: 7, shown: "7.00", position: 1, key: Qt.Key_End, stored: 1 },
                    { tag: "below", value: -2.5, shown: "-2.50", position: 0, key: Qt.Key_Home, stored: 0 },
                    { tag: "far above", value: 1e300, shown: "1e+300", position: 1, key: Qt.Key_Right, stored: 1 }];
        }
        function test_showsWhatIsStoredBeyondTheBoundsAsItIs(data) {
            open([aSlider(0, 1, data.value, true)]);
            compare(number().text, data.shown);
            verify(number().contentWidth <= number().width + 1);
            compare(slider().position, data.position);
            mouseClick(slider(), slider().handle.x + 14, slider().height / 2);
            compare(bench.changes, [], "the knob is where it was");
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            compare(numbers(), [data.stored]);
            compare(number().text, data.stored + ".00");
        }
        function test_showsNoNegativeNought() {
            open([aSlider(-15, 15, -0.04, true)]);
            compare(number().text, "0.0");
        }
        function test_showsNoColourBeforeTheKnobAtTheMinimum() {
            open([aSlider(0, 1, 0)]);
            const picture = grabImage(slider());
            for (let x = 0; x < 30; ++x)
                for (let y = 0; y < slider().height; ++y) {
                    const colour = picture.pixel(x, y);
                    verify(colour.b - colour.r < 0.05, `${colour} at ${x}, ${y}`);
                }
        }

        // -- the number, typed --

        function editor() { return find(host.item, item => item instanceof LineField && item.inputMethodHints === Qt.ImhFormattedNumbersOnly) }
        function type(text) {
            for (const letter of text)
                keyClick(letter);
        }
        function test_takesATypedNumber_data() {
            return [{ tag: "as it is", text: "72.5", stored: 72.5 }, { tag: "with a comma", text: "72,5", stored: 72.5 },
                    { tag: "too exact", text: "72.4567", stored: 72.5 }, { tag: "too large", text: "1000", stored: 90 },
                    { tag: "too small", text: "-3", stored: 50 }];
        }
        function test_takesATypedNumber(data) {
            open([aSlider(50, 90, 66.507937, true)]);
            mouseClick(number());
            verify(editor().activeFocus);
            compare(editor().text, "66.5");
            type(data.text);
            compare(bench.changes, [], "not while typing");
            keyClick(Qt.Key_Return);
            compare(numbers(), [data.stored]);
            verify(slider().activeFocus);
            tryVerify(() => !editor());
            compare(number().text, data.stored.toFixed(1));
        }
        function test_takesATypedNumberWhenTheFieldLosesTheFocus() {
            open([aSlider(50, 90, 66.5, true), aSwitch("After")]);
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            type("70");
            keyClick(Qt.Key_Down);
            compare(numbers(), [70]);
            verify(toggle().activeFocus);
        }
        function test_opensTheNumberOnceByAKeyThatIsHeld() {
            open([aSlider(50, 90, 66.5, true)]);
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyPress(Qt.Key_Return);
            for (let i = 0; i < 3; ++i) {
                bench.repeatKey(host.item, Qt.Key_Return);
                verify(editor()?.activeFocus);
            }
            keyRelease(Qt.Key_Return);
            keyClick(Qt.Key_Return);
            tryVerify(() => !editor());
        }
        function test_keepsTheNumberWhenNoneIsTyped_data() {
            return [{ tag: "nothing", text: "", end: Qt.Key_Return }, { tag: "a word", text: "abc", end: Qt.Key_Return },
                    { tag: "space", text: " ", end: Qt.Key_Return }, { tag: "given up", text: "70", end: Qt.Key_Escape }];
        }
        function test_keepsTheNumberWhenNoneIsTyped(data) {
            open([aSlider(50, 90, 66.507937, true)]);
            mouseClick(number());
            type(data.text);
            keyClick(data.end);
            compare(bench.changes, []);
            compare(root.escapes, 0, "the page stays");
            compare(number().text, "66.5");
            verify(slider().activeFocus);
        }
        function test_handsOnASliderOnceByAccessibilityAction() {
            open([aText("Opacity (1.0)"), aSlider(0, 1, 0.5)]);
            verify(bench.act(host.item, "Opacity (1.0)", "Increase"));
            compare(bench.changes, [[1, 0.55]]);
        }
        function test_handsOnNothingWhileASliderIsOnlyShown_data() {
            return [
                { tag: "bounds above nought", min: 50, max: 90, value: 70, shown: 70 },
                { tag: "bounds around nought", min: -15, max: 15, value: -3, shown: -3 },
                { tag: "bounds below nought", min: -20, max: -10, value: -12, shown: -12 },
                { tag: "a value below the bounds", min: 50, max: 90, value: 7, shown: 50 },
                { tag: "a value above the bounds", min: 0, max: 1, value: 7, shown: 1 },
                { tag: "nil", min: 50, max: 90, value: undefined, shown: 50 },
            ];
        }
        function test_handsOnNothingWhileASliderIsOnlyShown(data) {
            open([aSlider(data.min, data.max, data.value)]);
            compare(slider().value, data.shown);
            compare(bench.changes.length, 0);
        }
        function test_settlesASliderWithoutHandingItOn() {
            open([aSlider(0, 1, 0.5)]);
            show([aSlider(0, 1, 0.25)]);
            compare(slider().value, 0.25);
            compare(bench.changes.length, 0);
        }
    }
}
