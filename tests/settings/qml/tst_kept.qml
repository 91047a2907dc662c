import QtQuick
import QtTest
import Lumora

// The sheets of what would change, and of what was changed.
Item {
    id: root

    property DifferencesModel offer: null

    width: 390
    height: 700

    ListModel {
        id: past

        property int place: 0
        property string moment: past.place < count ? "Tuesday, 19 November 2024, 17:02:40" : ""
        property int differing: count - past.place
        property var undone: []
        property int restored: 0
        signal moved

        function undo(row) { undone = undone.concat(row) }
        function restore() { ++restored }
    }
    Loader {
        id: place

        anchors.fill: parent
    }
    Component {
        id: differences
        DifferencesSheet { differences: root.offer; title: "Quiet"; action: "Apply %1"; gap: 52 }
    }
    Component {
        id: history
        HistorySheet { history: past; gap: 52 }
    }
    QtObject {
        id: stage

        property bool covered: false
        property var shell: ({ waiting: false })
        property var offered: []

        function offer(differences, title) { offered = offered.concat(title) }
    }
    QtObject {
        id: source

        signal offered(var offer, string title)

        function preview(offer) {}
    }
    Component {
        id: profilePlace
        ProfilePlace { window: stage; profiles: source; first: "" }
    }
    SignalSpy { id: accepts; target: place.item as DifferencesSheet; signalName: "accepted" }
    SignalSpy { id: ends; target: place.item; signalName: "gone" }

    DrawnCase {
        name: "Kept"
        host: place

        function init() {
            beginAsUsual();
            past.undone = [];
            past.restored = 0;
        }
        function cleanup() {
            place.sourceComponent = null;
            accepts.clear();
            ends.clear();
        }
        function openOffer(content) {
            root.offer = bench.differences(content);
            place.sourceComponent = differences;
            verify(waitForRendering(place.item));
        }
        function lookBack(changes) {
            past.clear();
            changes.forEach(change => past.append(Object.assign({ path: "Apps", time: "17:02:40", day: "Yesterday", possible: true, later: false }, change)));
            past.place = changes.length;
            place.sourceComponent = history;
            verify(waitForRendering(place.item));
        }
        function button(text) { return find(place.item, item => item instanceof TextButton && item.text === text) }

        function test_tellsWhatIsLeftOutAndWhereEachSettingIs() {
            openOffer({ notes: ["1 passcode was left out: kCode"], changes: [{ title: "Badges", path: "Apps", now: "On", then: "Off" }] });
            verify(spokenAs("1 passcode was left out: kCode"));
            compare(spokenAs("Badges").description, "Apps: On → Off");
            mouseClick(button("Apply 1"));
            compare([accepts.count, ends.count], [1, 1]);
        }
        function test_acceptsByReturnUnlessThatIsHeldFromBefore() {
            openOffer({ changes: [{ title: "Badges", path: "Apps", now: "On", then: "Off" }] });
            bench.repeatKey(place.item, Qt.Key_Return);
            keyRelease(Qt.Key_Return);
            compare(accepts.count, 0);
            keyClick(Qt.Key_Return);
            compare(accepts.count, 1);
        }
        function test_doesNothingMoreWhileItSlidesAway() {
            Theme.animated = true;
            openOffer({ changes: [{ title: "Badges", path: "Apps", now: "On", then: "Off" }] });
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Return);
            compare(accepts.count, 1);
            lookBack([{ title: "Badges", change: "On → Off" }]);
            past.place = 0;
            button("Restore 1").forceActiveFocus();
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Return);
            compare(past.restored, 1);
        }
        function test_offersNothingWhereNothingWouldChange() {
            openOffer({ notes: ["Nothing changes: all its settings are so already."], changes: [] });
            verify(!button("Apply 0").enabled);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(accepts.count, 0);
            keyClick(Qt.Key_Escape);
            compare(ends.count, 1);
        }
        function test_goesBackInTimeByKeysAndRestoresThat() {
            lookBack([{ title: "Badges", change: "On → Off" }, { title: "Labels", change: "On → Off" }]);
            verify(!button("Restore").enabled);
            compare(spokenFocus(), ["Time"]);
            const rings = () => all(place.item, item => item instanceof FocusRing && item.visible).length;
            compare(rings(), 0);
            keyClick(Qt.Key_Left);
            compare(past.place, 1);
            compare(rings(), 1);
            verify(spokenAs("Tuesday, 19 November 2024, 17:02:40"));
            mouseClick(button("Restore 1"));
            compare([past.restored, ends.count], [1, 1]);
        }
        function test_takesBackOneChangeWhereThatCanBe() {
            lookBack([{ title: "Badges", change: "On → Off" }, { title: "Passcode", change: "Changed", possible: false }]);
            compare(all(place.item, item => item instanceof TextButton && item.text === "Undo" && item.visible).length, 1);
            verify(button("Undo").height >= 44);
            compare(spokenAs("Undo “Badges”").description, "On → Off");
            mouseClick(button("Undo"));
            compare(past.undone, [0]);
            compare(ends.count, 0);
        }
        function test_keepsAProfileThatComesWhileASheetIsOpen() {
            verify(createTemporaryObject(profilePlace, root));
            stage.covered = true;
            source.offered(null, "Quiet");
            compare(stage.offered, []);
            stage.covered = false;
            tryCompare(stage, "offered", ["Quiet"]);
        }
        function test_saysWhereNoChangeIsKnown() {
            lookBack([]);
            verify(spokenAs("No change is known yet"));
            compare(spokenFocus(), ["Done"]);
        }
    }
}
