import QtQuick
import QtTest
import Lumora

// Fields, and those of passcodes.
PageStage {
    id: root

    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }

    RowsCase {
        name: "Fields"
        stage: root

        function init() {
            beginAsUsual();
            root.escapes = 0;
        }

        function test_handsOnAFieldWithEnterOnlyIfSomethingWasTyped() {
            open([aField("Text", "a")]);
            const f = field();
            f.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            compare(bench.changes.length, 0);
            f.cursorPosition = 1;
            keyClick("b");
            compare(bench.changes.length, 0, "not while typing");
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Return);
            compare(bench.changes, [[0, "ab"]]);
        }
        function test_handsOnAFieldWhenItLosesTheFocus() {
            open([aField("First"), aField("Second")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("x");
            keyClick(Qt.Key_Tab);
            compare(bench.changes, [[0, "x"]]);
            keyClick(Qt.Key_Backtab);
            compare(bench.changes.length, 1);
        }
        function test_handsOnAClearedFieldAsEmptyText() {
            open([aField("Text", "a")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Backspace);
            keyClick(Qt.Key_Enter);
            compare(bench.changes, [[0, ""]]);
        }
        function test_doesNotOverwriteWhatIsBeingTyped() {
            open([aField("Text", "a")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("b");
            show([aField("Text", "other")]);
            compare(field().text, "ab");
        }
        function test_speaksOfASecureFieldInDotsOnly() {
            open([aGroup(undefined, "Footer"), aSecureField("Passcode", "hidden")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("q");
            const secret = allSpokenAs("Passcode");
            compare(secret.length, 1);
            compare(secret[0].description, "Secure. Footer");
            compare(secret[0].text, "•••••••");
            compare(secret[0].focused, true);
            for (const control of bench.spoken(host.item))
                for (const text of [control.name, control.description, control.value, control.text, String(control.number ?? "")])
                    verify(!/hidden|hiddenq|q$/.test(text), "told: " + text);
            verify(!texts().some(text => /hidden/.test(text)));
        }
        function test_speaksThePlainTextOfAnOrdinaryField() {
            open([aField("Subtitle", "plain")]);
            const told = allSpokenAs("Subtitle");
            compare(told.length, 1);
            verify(told[0].value === "plain" || told[0].text === "plain");
        }

        // -- taken back --

        function test_takesBackWhatWasTypedByTheFirstEscape() {
            open([aField("Text", "before")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("x");
            keyClick(Qt.Key_Escape);
            compare(field().text, "before");
            compare(root.escapes, 0, "the page stays");
            verify(field().activeFocus);
            keyClick(Qt.Key_Escape);
            compare(root.escapes, 1);
            stage.before.forceActiveFocus();
            compare(bench.changes, []);
        }
        function test_leavesEscapeToThePageWhenNothingWasTyped() {
            open([aField("Text", "before")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Escape);
            compare(root.escapes, 1);
        }
        function test_takesBackNothingThatWasHandedOn() {
            open([aField("Text", "")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("a");
            keyClick(Qt.Key_Return);
            keyClick("b");
            keyClick(Qt.Key_Escape);
            compare(field().text, "a");
            compare(bench.changes, [[0, "a"]]);
        }

        // -- the eye --

        function signs() { return find(host.item, item => item instanceof PasscodeSigns) }
        function eye() { return find(signs(), item => item.down !== undefined) }
        function typePasscode(text) {
            for (const letter of text)
                keyClick(letter);
        }
        function enter(stored) {
            open([aSecureField("Passcode", stored), aSwitch("After")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
        }
        // What is seen while the eye is held.
        function peek() {
            tryVerify(() => eye().visible && signs().width >= eye().width);
            mousePress(eye());
            const letters = find(field(), item => item.text !== undefined && item.visible && /[^•]/.test(item.text) && item.parent.clip);
            const seen = letters?.text;
            mouseRelease(eye());
            verify(!letters?.visible, "hidden again");
            verify(field().activeFocus);
            return seen;
        }
        function test_showsOnlyWhatWasTypedWhileTheEyeIsHeld_data() {
            const left = Array(2).fill(Qt.Key_Left);
            return [
                { tag: "at the end", stored: "hidden", keys: ["1", "2"], seen: "••••••12" },
                { tag: "in the middle", stored: "hidden", keys: [...left, "1", "2"], seen: "••••12••" },
                { tag: "like its neighbour", stored: "0000", keys: [...left, "0"], seen: "••0••" },
                { tag: "after a deletion", stored: "hidden", keys: [Qt.Key_Backspace, Qt.Key_Backspace, "1"], seen: "••••1" },
                { tag: "a letter deleted again", stored: "hidden", keys: ["1", "2", Qt.Key_Backspace, Qt.Key_Home, Qt.Key_Delete], seen: "•••••1" },
                { tag: "all anew", stored: "hidden", keys: [Qt.Key_Home, "S", "1", "2"], seen: "12" },
                { tag: "a part replaced", stored: "hidden", keys: [Qt.Key_Home, "s", "1"], seen: "1•••••" },
                { tag: "without a stored one", stored: "", keys: ["1", "2"], seen: "12" },
            ];
        }
        function test_showsOnlyWhatWasTypedWhileTheEyeIsHeld(data) {
            enter(data.stored);
            for (const key of data.keys) {
                if (key === "S")
                    keyClick(Qt.Key_End, Qt.ShiftModifier);
                else if (key === "s")
                    keyClick(Qt.Key_Right, Qt.ShiftModifier);
                else
                    keyClick(key);
            }
            compare(peek(), data.seen);
        }
        function test_hasNoEyeForWhatIsStored() {
            enter("hidden");
            verify(!eye().visible);
            keyClick(Qt.Key_Backspace);
            verify(!eye().visible);
            keyClick("a", Qt.ControlModifier);
            keyClick(Qt.Key_Backspace);
            for (const key of ["z", "y"])
                keyClick(key, Qt.ControlModifier);
            verify(!eye().visible);
            compare(field().text, "");
        }
        function test_forgetsWhatWasTypedOnceItIsStoredTakenBackOrLeft_data() {
            return [{ tag: "stored", end: () => keyClick(Qt.Key_Return) }, { tag: "taken back", end: () => keyClick(Qt.Key_Escape) },
                    { tag: "left", end: () => { keyClick(Qt.Key_Tab); keyClick(Qt.Key_Backtab); } }];
        }
        function test_forgetsWhatWasTypedOnceItIsStoredTakenBackOrLeft(data) {
            enter("hidden");
            typePasscode("12");
            verify(eye().visible);
            data.end();
            verify(field().activeFocus);
            verify(!eye().visible);
            keyClick(Qt.Key_End);
            typePasscode("3");
            verify(/^•+3$/.test(peek()));
        }
        function test_tellsAssistiveToolsNothingOfTheEye() {
            enter("");
            const before = bench.spoken(host.item).length;
            typePasscode("secret");
            tryVerify(() => signs().width >= eye().width);
            mousePress(eye());
            verify(eye().down);
            const told = bench.spoken(host.item);
            compare(told.length, before);
            verify(!JSON.stringify(told).includes("secret"));
            compare(spokenAs("Passcode").text, "••••••");
            mouseRelease(eye());
        }

        // -- Caps Lock --

        function test_tellsOfCapsLockBesideAPasscode() {
            enter("");
            const told = () => texts().includes("Caps Lock");
            keyClick("a");
            verify(!told());
            keyClick("A"); // with Caps Lock, no Shift comes along
            verify(told());
            compare(spokenAs("Caps Lock").role, Accessible.AlertMessage);
            keyClick("1");
            verify(told());
            keyClick("b", Qt.ShiftModifier);
            verify(told(), "a small letter in spite of Shift");
            keyClick(Qt.Key_Tab);
            verify(!told(), "only where a passcode is typed");
            keyClick(Qt.Key_Backtab);
            verify(told());
            keyClick(Qt.Key_CapsLock);
            verify(!told());
            keyClick("A");
            keyClick("B", Qt.ShiftModifier);
            verify(!told());
        }
        function test_tellsNothingOfCapsLockBesideOtherTexts() {
            open([aField("Text", "")]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("A");
            verify(!texts().includes("Caps Lock"));
            keyClick("a");
        }
    }
}
