import QtQuick
import QtTest
import Lumora

// The menu of a page's row.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    RowsCase {
        name: "RowMenu"
        stage: root

        function init() {
            beginAsUsual();
            root.escapes = 0;
        }

        function identified(row) { return Object.assign({ identifier: "kKey" }, row) }
        function row(title) { return find(host.item, item => item.row?.title === title && item.first !== undefined) }
        function menu() { return find(host.item, item => item instanceof RowMenu) }
        function isOpen() { return menu()?.open ?? false }
        function menuLines() { return all(menu(), item => item instanceof TableMenuLine).map(line => line.text) }
        function choose(text) {
            waitForRendering(host.item, 500); // by then each line has its place
            mouseClick(find(menu(), item => item instanceof TableMenuLine && item.text === text));
        }
        function at(title, x = 60) { return row(title).mapToItem(host.item, x, 22) }
        function openByMouse(title) { mouseClick(host.item, at(title).x, at(title).y, Qt.RightButton) }
        // Until it opens, if it does.
        function pressLong(place, then) {
            const finger = touchEvent(host.item);
            finger.press(0, host.item, place.x, place.y).commit();
            then ? then(finger) : tryVerify(isOpen);
            finger.release(0, host.item, place.x, place.y).commit();
        }

        function test_opensByFingerMouseAndKeysAndDoesNotTapTheRow_data() {
            const byKey = (...key) => {
                row("Link").forceActiveFocus(Qt.TabFocusReason);
                keyClick(...key);
            };
            return [
                { tag: "long press", act: () => pressLong(at("Link")) }, { tag: "right button", act: () => openByMouse("Link") },
                { tag: "Menu", act: () => byKey(Qt.Key_Menu) }, { tag: "Shift+F10", act: () => byKey(Qt.Key_F10, Qt.ShiftModifier) },
            ];
        }
        function test_opensByFingerMouseAndKeysAndDoesNotTapTheRow(data) {
            open([aText("Above"), identified(aLink("Link"))]);
            data.act();
            verify(isOpen());
            compare(menuLines(), ["Copy Title", "Copy Identifier"]);
            compare(menu().around.y, row("Link").mapToItem(host.item, 0, 0).y);
            compare(bench.taps, []);
        }
        function test_copiesWhatTheRowShows_data() {
            return [
                { tag: "switch", row: aSwitch("Row", true), value: "On" }, { tag: "slider", row: aSlider(0, 1, 0.25, true), value: "0.25" },
                { tag: "field", row: aField("Hint", "words"), value: "words" }, { tag: "option list", row: aList("Row", "Ten"), value: "Ten" },
            ];
        }
        function test_copiesWhatTheRowShows(data) {
            open([identified(data.row)]);
            mouseClick(host.item, 60, 42, Qt.RightButton);
            choose("Copy Value");
            compare(Clipboard.text(), data.value);
            verify(!isOpen());
            mouseClick(host.item, 60, 42, Qt.RightButton);
            choose("Copy Identifier");
            compare(Clipboard.text(), "kKey");
            compare([bench.changes, bench.taps], [[], []]);
        }
        function test_neverCopiesWhatIsSecret() {
            open([identified(aSecureField("Passcode", "1234"))]);
            mouseClick(host.item, 60, 42, Qt.RightButton);
            compare(menuLines(), ["Copy Identifier"]);
        }
        function test_hasNoMenuWithoutAnythingInIt() {
            open([aField("Hint", "")]);
            mouseClick(host.item, 60, 42, Qt.RightButton);
            verify(!isOpen());
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Menu);
            verify(!isOpen());
        }
        function test_resetsARowToItsDefault_data() {
            return [
                { tag: "switch", row: aSwitch("Row", true), byDefault: false }, { tag: "slider", row: aSlider(0, 1, 0.25, true), byDefault: 1 },
                { tag: "field", row: aField("Hint", "words"), byDefault: "" }, { tag: "option list", row: aList("Row", "Ten"), byDefault: 5 },
            ];
        }
        function test_resetsARowToItsDefault(data) {
            open([identified(Object.assign({ byDefault: data.byDefault }, data.row))]);
            mouseClick(host.item, 60, 42, Qt.RightButton);
            choose("Reset to Default");
            compare(bench.changes, [[0, data.byDefault]]);
        }
        function test_offersNoResetOfWhatHasItsDefaultOrIsNotKnownToHaveOne() {
            open([Object.assign({ byDefault: 1 }, identified(aSlider(0, 2, 1.0, true))), identified(aSwitch("Switch", true))]);
            mouseClick(host.item, 60, 42, Qt.RightButton);
            verify(!menuLines().includes("Reset to Default"));
            menu().close();
            openByMouse("Switch");
            compare(menuLines(), ["Copy Value", "Copy Title", "Copy Identifier"]);
        }
        function test_takesFurtherLines() {
            let told = null;
            open([aSwitch("Switch")]);
            openByMouse("Switch");
            const reset = Qt.createQmlObject('import Lumora; RowAction { text: "Reset"; isFor: row => row.cell === RowModel.SwitchCell }', root);
            reset.chosen.connect(row => told = row.title);
            menu().actions.push(reset);
            menu().close();
            openByMouse("Switch");
            choose("Reset");
            compare(told, "Switch");
            reset.destroy();
        }
        function test_opensAtTheFingerAndWithinTheRow() {
            open([identified(aLink("Link"))]);
            for (const x of [5, 180, 350]) {
                pressLong(at("Link", x));
                const box = menu().box;
                verify(box.x >= 16 && box.x + box.width <= 390 - 16, box.x);
                verify(Math.abs(box.x + box.width / 2 - at("Link", x).x) < 1 || [16, 390 - 16 - box.width].includes(box.x));
                menu().close();
            }
        }
        function test_opensAboveARowAtTheEnd() {
            open(Array.from({ length: 40 }, (_, i) => aLink("Row " + i)));
            const view = find(host.item, item => item instanceof Scroller);
            view.contentY = view.contentHeight - view.height;
            openByMouse("Row 39");
            waitForRendering(host.item, 500);
            verify(menu().box.y + menu().box.height < at("Row 39").y);
        }
        function test_leavesShortPressesScrollsAndGripsAlone_data() {
            const enough = Theme.holdTime + 300;
            return [
                { tag: "short", press: finger => wait(50), taps: [1] },
                { tag: "scroll", press: finger => {
                    for (let y = 20; y <= 100; y += 20)
                        finger.move(0, host.item, at("Link").x, at("Link").y + y).commit();
                    wait(enough);
                }, taps: [] },
            ];
        }
        function test_leavesShortPressesScrollsAndGripsAlone(data) {
            open([aText("Above"), aLink("Link")]);
            pressLong(at("Link"), data.press);
            verify(!isOpen());
            compare(bench.taps, data.taps);
        }
        function test_leavesTheKnobOfASliderInTheHand() {
            open([identified(aSlider(0, 1, 0))]);
            const knob = slider().handle.mapToItem(host.item, 14, 14);
            pressLong(knob, finger => {
                wait(Theme.holdTime + 300);
                verify(!isOpen());
                verify(slider().pressed);
                finger.move(0, host.item, knob.x + 100, knob.y).commit();
                finger.move(0, host.item, knob.x + 150, knob.y).commit();
                verify(slider().value > 0.1, slider().value);
            });
        }
        function test_changesNoSliderByALongPressBesideItsKnob() {
            open([identified(aSlider(0, 1, 0))]);
            pressLong({ x: 250, y: 42 });
            compare(bench.changes, []);
            compare(slider().value, 0);
        }
        function test_closesAloneWithEscapeAndGivesTheFocusBack() {
            open([aSwitch("Switch"), aLink("Link")]);
            row("Link").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Menu);
            verify(!row("Link").activeFocus);
            keyClick(Qt.Key_Escape);
            verify(!isOpen());
            verify(row("Link").visualFocus);
            compare(root.escapes, 0);
        }
        function test_walksItsLinesByKeysAndChoosesOne() {
            open([identified(aSwitch("Switch", true))]);
            row("Switch").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Menu);
            for (const key of [Qt.Key_Down, Qt.Key_Down, Qt.Key_Down, Qt.Key_Up, Qt.Key_Up])
                keyClick(key);
            keyClick(Qt.Key_Return);
            compare(Clipboard.text(), "Switch");
            verify(row("Switch").activeFocus);
        }
        function test_closesWhenItsRowGoesOrThePageIsCovered_data() {
            return [{ tag: "gone", end: () => show([aLink("Other")]) }, { tag: "covered", end: () => host.enabled = false }, { tag: "asked", end: () => host.item.putBack() },
                    { tag: "turned", end: () => root.width = 400 }];
        }
        function test_closesWhenItsRowGoesOrThePageIsCovered(data) {
            open([aLink("Link")]);
            openByMouse("Link");
            verify(isOpen());
            data.end();
            tryVerify(() => !isOpen());
            root.width = 390;
        }
        function test_staysOpenWhenTheValueChanges() {
            open([aSwitch("Switch", false)]);
            openByMouse("Switch");
            show([aSwitch("Switch", true)]);
            choose("Copy Value");
            compare(Clipboard.text(), "On");
        }
        function test_tellsAssistiveToolsWhoseMenuItIs() {
            open([aLink("Link")]);
            openByMouse("Link");
            verify(spoken(control => control.role === Accessible.PopupMenu && control.name === "Link").length === 1);
            verify(spokenAs("Copy Title"));
        }
        function test_showsASignUnderTheFingerWhenAnimated() {
            Theme.animated = true;
            open([aLink("Link")]);
            pressLong(at("Link"));
            verify(find(menu(), item => item instanceof PressSign).visible);
        }
    }
}
