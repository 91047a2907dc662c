import QtQuick
import QtTest
import Lumora

// The composer as it is drawn and handled, with the bench in place of the main thread.
Item {
    id: root

    width: 390
    height: 700

    property PageModel shownPage: null
    property bool animated: true

    Loader {
        id: loader

        anchors.fill: parent
        active: false
        sourceComponent: Composer {
            composer: root.shownPage.composer
            gap: 52
            animated: root.animated
        }
    }
    SignalSpy {
        id: gone

        target: loader.item
        signalName: "gone"
    }

    DrawnCase {
        name: "Composer"
        host: loader

        readonly property var message: ({
            id: 1, to: "support@nevo.example", subject: "Subject", body: "One\nTwo",
            attachments: [{ name: "log", size: 48200 }, { name: "dpkgl.log", size: 1260000 }],
        })

        function init() {
            beginAsUsual();
            resize(390, 700, 100);
            open({});
        }
        function cleanup() { host.active = false }
        function resize(width, height, textSize) {
            root.width = width;
            root.height = height;
            Theme.textSize = textSize;
        }
        function open(changes) {
            host.active = false;
            root.shownPage = bench.page({ rows: [] });
            bench.compose(Object.assign({}, message, changes));
            host.active = true;
            gone.clear();
            verify(waitForRendering(host.item));
        }
        function show(changes) { bench.compose(Object.assign({}, message, changes)) }
        function withText(text) { return find(host.item, item => item.text === text) }
        function button(text) { return find(host.item, item => item.clicked !== undefined && item.text === text && item.visible) }
        function scroller() { return find(host.item, item => item instanceof ComposerMessage) }
        function status() { return find(host.item, item => item instanceof ComposerStatus) }
        function statusText() { return find(status(), item => item instanceof WordText) }
        function sheet() { return find(host.item, item => item.height === root.height - 52) }
        // What has the focus after each of so many Tabs.
        function tabOrder(count) {
            return Array.from({ length: count }, () => {
                keyClick(Qt.Key_Tab);
                return spokenFocus()[0];
            });
        }
        function shownBody() { return spokenAs("Message").text.replace("\u2029", "\n") }
        function press(name) { verify(bench.act(host.item, name, "Press")) }
        // Types where the focus is.
        function type(letters) {
            for (const letter of letters)
                keyClick(letter);
        }
        // What was done since it was opened.
        function actions() { return bench.compositions.map(composition => composition.action) }
        function done() { return bench.compositions[bench.compositions.length - 1] }

        function test_slidesInAndOutIfAskedUnlessNothingMoves_data() {
            return [{ tag: "animated", moves: true, asked: true }, { tag: "at once", moves: true, asked: false },
                    { tag: "nothing moves", moves: false, asked: true }];
        }
        function test_slidesInAndOutIfAskedUnlessNothingMoves(data) {
            const slides = data.moves && data.asked;
            host.active = false;
            Theme.animated = data.moves;
            root.animated = data.asked;
            host.active = true;
            compare(sheet().y > 52, slides);
            tryCompare(sheet(), "y", 52);
            gone.clear();
            bench.compose({});
            compare(gone.count, slides ? 0 : 1);
            tryCompare(gone, "count", 1);
            root.animated = true;
        }
        function test_beginsWithTheMessageAndTheFocusInItsText() {
            compare(spokenAs("To").text, "support@nevo.example");
            compare(spokenAs("Subject").text, "Subject");
            compare(shownBody(), "One\nTwo");
            compare(spokenFocus(), ["Message"]);
            verify(spokenAs("Attachment log, 48 kB"));
            verify(spokenAs("Attachment dpkgl.log, 1.3 MB"));
        }
        function test_namesEverythingForAssistiveTools() {
            for (const name of ["Cancel", "Send", "Save Draft"])
                compare(spokenAs(name).role, Accessible.Button, name);
            for (const name of ["To", "Subject", "Message"])
                compare(spokenAs(name).role, Accessible.EditableText, name);
            verify(spoken(control => control.name === "New Message").some(control => control.role === Accessible.Dialog));
        }
        function test_handsOverWhatWasEdited() {
            type("x ");
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            keyClick(Qt.Key_End);
            type("!");
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(done(), { action: "send", to: "support@nevo.example", subject: "Subject!", body: "x One\nTwo" });
        }
        function test_keepsWhatIsBeingTypedWhenASnapshotArrives() {
            type("x");
            show({ body: "Another", to: "" });
            show({ problem: "No way" });
            compare(spokenFocus(), ["Message"]);
            type("y");
            press("Save Draft");
            compare(done(), { action: "save", to: "support@nevo.example", subject: "Subject", body: "xyOne\nTwo" });
        }
        function test_cannotBePressedTwice() {
            press("Send");
            press("Send");
            press("Save Draft");
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            keyClick(Qt.Key_Escape);
            show({ working: true });
            press("Cancel");
            type("x");
            compare(actions(), ["send"]);
            compare(shownBody(), "One\nTwo");
            verify(spokenAs("Sending…"));
        }
        function test_saysWhyItIsStillThereAndCanBePressedAgain() {
            press("Send");
            show({ working: true });
            show({ problem: "There is no address to send it to." });
            verify(spokenAs("There is no address to send it to."));
            press("Send");
            compare(actions(), ["send", "send"]);
        }
        function test_cannotBeSentWithoutARecipient() {
            open({ to: " " });
            press("Send");
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(actions(), []);
        }
        function test_isCancelledWithEscape() {
            keyClick(Qt.Key_Escape);
            compare(actions(), ["cancel"]);
            bench.compose({});
            compare(gone.count, 1);
        }
        function test_goesThroughEverythingWithTab() {
            compare(tabOrder(6), ["Save Draft", "Cancel", "Send", "To", "Subject", "Message"]);
            compare(shownBody(), "One\nTwo", "Tab is no letter here");
        }
        function test_keepsOnlyWhatWasEditedWhenTheWindowCloses() {
            host.item.leave();
            compare(actions(), []);
            type("x");
            host.item.leave();
            compare(done(), { action: "leave", to: "support@nevo.example", subject: "Subject", body: "xOne\nTwo" });
        }
        function test_asksToKeepAMessageThatIsBeingSentWhenTheWindowCloses() {
            press("Send");
            host.item.leave();
            show({ working: true });
            host.item.leave();
            show({ problem: "No room" });
            host.item.leave();
            compare(actions(), ["send", "leave", "leave", "leave"], "it was to be sent, so it is to be kept");
        }
        function test_asksBeforeWhatWasEditedIsThrownAway_data() { return [{ tag: "Escape" }, { tag: "Cancel" }] }
        function test_asksBeforeWhatWasEditedIsThrownAway(data) {
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            type("x");
            if (data.tag === "Escape")
                keyClick(Qt.Key_Escape);
            else
                press("Cancel");
            verify(spokenAs("Keep what was written?"));
            compare(spokenFocus(), ["Save Draft"]);
            compare(tabOrder(3), ["Continue Editing", "Delete Draft", "Save Draft"], "nothing else can be reached");
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(actions(), [], "nothing has been done");
            press("Delete Draft");
            compare(actions(), ["cancel"]);
        }
        function test_goesOnWithASecondEscapeOrTheButton() {
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            type("x");
            keyClick(Qt.Key_Escape);
            keyClick(Qt.Key_Escape);
            compare(spokenFocus(), ["Subject"], "where it was");
            verify(!spokenAs("Keep what was written?"));
            keyClick(Qt.Key_Escape);
            press("Continue Editing");
            compare(spokenFocus(), ["Subject"]);
            compare(spokenAs("Subject").text, "xSubject");
            compare(actions(), []);
        }
        function test_savesADraftWhenAsked() {
            type("x");
            keyClick(Qt.Key_Escape);
            keyClick(Qt.Key_Space);
            compare(done(), { action: "save", to: "support@nevo.example", subject: "Subject", body: "xOne\nTwo" });
            show({ working: true });
            verify(spokenAs("Saving…"));
        }
        function test_marksOnlyTheReasonOfAFailureAsAWarning() {
            press("Send");
            compare([statusText().text, statusText().color], ["Sending…", Theme.secondary]);
            show({ working: true });
            show({ problem: "No way" });
            compare([statusText().text, statusText().color], ["No way", Theme.warning]);
        }
        // From above to below, each where the one before ends, and in the window.
        function verifyInOrder(items) {
            let bottom = 52;
            for (const item of items) {
                const place = item.mapToItem(host.item, 0, 0);
                verify(place.y >= bottom - 1, `${item} is at ${place.y}, not beneath ${bottom}`);
                bottom = place.y + item.height;
            }
            verify(bottom <= host.item.height + 1, `it ends at ${bottom}`);
        }
        function test_leavesRoomForTheMessageWhateverIsSaid_data() {
            return [{ width: 390, height: 844, textSize: 100 }, { width: 320, height: 568, textSize: 200 },
                    { width: 320, height: 400, textSize: 300 }, { width: 1024, height: 400, textSize: 300 }];
        }
        function test_leavesRoomForTheMessageWhateverIsSaid(data) {
            resize(data.width, data.height, data.textSize);
            const problem = "This is no address: " + "x".repeat(3000) + "@nevo.example. ";
            for (const said of [problem, problem.repeat(3), "No way"]) {
                open({ problem: said });
                verify(scroller().height >= 44);
                verify(status().height <= 0.4 * host.item.height);
                verify(status().height > 0);
                if (said !== "No way") {
                    const scrolled = find(status(), item => item instanceof Scroller);
                    verifyInOrder([withText("New Message"), scroller(), status(), button("Save Draft")]);
                    compare(spokenAs(said).name, said);
                    scrolled.forceActiveFocus(Qt.TabFocusReason);
                    keyClick(Qt.Key_End);
                    fuzzyCompare(scrolled.contentY, statusText().height - scrolled.height, 1);
                }
            }
        }
        function test_showsWhatHasTheFocusAndAsksInTheLowestWindow() {
            resize(320, 400, 300);
            open({ problem: "No way. ".repeat(50) });
            for (const name of ["Subject", "To"]) {
                keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
                compare(spokenFocus(), [name]);
                const field = find(host.item, item => item instanceof ComposerField && item.label === name);
                const top = field.mapToItem(scroller(), 0, 0).y;
                verify(top >= 0 && top + field.height <= scroller().height, `${name} at ${top}, ${field.height} of ${scroller().height}`);
            }
            type("x");
            keyClick(Qt.Key_Escape);
            const buttons = ["Delete Draft", "Save Draft", "Continue Editing"].map(button);
            waitForRendering(host.item);
            verifyInOrder([...(scroller().visible ? [scroller()] : []), withText("Keep what was written?"), ...buttons]);
            verify(!withText("New Message").visible, "there is no room for both");
            keyClick(Qt.Key_Escape);
            verify(withText("New Message").visible);
        }
        function test_growsWithItsTextAndScrollsToTheCursor() {
            open({ body: "line\n".repeat(200) });
            verify(scroller().contentHeight > 200 * 15);
            keyClick(Qt.Key_End, Qt.ControlModifier);
            tryVerify(() => scroller().contentY > 200 * 15 - scroller().height);
            keyClick(Qt.Key_Home, Qt.ControlModifier);
            tryVerify(() => scroller().contentY < 120);
        }
        function test_fitsEveryWidth_data() { return [{ width: 320 }, { width: 390 }, { width: 1024 }] }
        function test_fitsEveryWidth(data) {
            root.width = data.width;
            tryCompare(host.item, "width", data.width);
            let end = 0;
            for (const item of ["Cancel", "New Message", "Send"].map(withText)) {
                const left = item.mapToItem(host.item, 0, 0).x;
                verify(left >= end, `${item.text} at ${left}`);
                end = left + item.width;
            }
            verify(end <= data.width);
        }
    }
}
