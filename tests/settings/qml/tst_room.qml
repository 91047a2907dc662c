import QtQuick
import QtTest
import Lumora

// Pages that get less room while somebody types, as above a keyboard on the screen.
PageStage {
    id: root

    RowsCase {
        name: "Room"
        stage: root

        function cleanup() {
            root.height = 700;
            stage.shownPage = null;
        }
        function among(row) { return [...Array(15).fill(aText("Above")), row, ...Array(15).fill(aText("Below"))] }
        function test_leavesWhatIsEditedInView_data() {
            const rooms = [{ left: 440 }, { left: 138 }, { left: 60 }];
            const kinds = [{ tag: "field", row: aField("Hint", "words") }, { tag: "secure field", row: aSecureField("Hint", "words") },
                           { tag: "number", row: aSlider(0, 1, 0.5, true) }];
            return [].concat(...kinds.map(kind => rooms.map(room => ({ tag: kind.tag + " in " + room.left, row: kind.row, left: room.left }))));
        }
        function test_leavesWhatIsEditedInView(data) {
            wait(Application.styleHints.mouseDoubleClickInterval + 50); // the tap before is no half of a double click
            open(among(data.row));
            const view = find(host.item, item => item instanceof Scroller);
            const row = find(host.item, item => item.row?.cell === data.row.cell && item.first !== undefined);
            view.contentY = row.mapToItem(view.contentItem, 0, 0).y - 600;
            const finger = touchEvent(host.item);
            const place = row.mapToItem(host.item, row.width - 30, 22);
            finger.press(0, host.item, place.x, place.y).commit();
            finger.release(0, host.item, place.x, place.y).commit();
            const edited = root.Window.activeFocusItem;
            verify(edited instanceof LineField);
            root.height = data.left;
            const top = () => edited.mapToItem(root, 0, 0).y;
            tryVerify(() => top() >= 0 && top() + edited.height <= root.height, 5000, top() + " of " + data.left);
            compare(root.Window.activeFocusItem, edited);
        }
    }
}
