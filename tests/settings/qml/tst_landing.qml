import QtQuick
import QtTest
import Lumora

// Rows to which the search leads.
PageStage {
    id: root

    RowsCase {
        name: "Landing"
        stage: root

        readonly property string told: "Found by the search"

        function land(row) { host.item.land(row, told) }
        function scroller() { return find(host.item, item => item instanceof Scroller) }
        function alerts() { return spoken(control => control.name.startsWith(told)).map(control => control.name) }

        function test_standInTheMiddleAndHaveTheFocus() {
            open(Array.from({ length: 40 }, (_, i) => aSwitch("Row " + i, false)));
            land(30);
            const row = find(host.item, item => item instanceof SwitchRow && item.text === "Row 30");
            verify(row.visualFocus);
            fuzzyCompare(row.mapToItem(host.item, 0, row.height / 2).y, host.height / 2, 1);
        }
        function test_tellThatTheyAreFoundUntilTheFocusGoesElsewhere() {
            open([aGroup("", "Below"), aSwitch("One", false), aSwitch("Two", false), aGroup(), aList("Three", "3"), aField("Four", ""), aSlider(0, 1, 0.5, true)]);
            for (const [row, name, description] of [[2, "Two", told + ". Below"], [4, "Three", "3. " + told], [5, "Four", told]]) {
                land(row);
                verify(spokenFocus().includes(name));
                compare(spokenAs(name).description, description);
                compare(spoken(control => control.description.includes(told)).length, 1);
            }
            compare(alerts(), []);
            keyClick(Qt.Key_Down);
            compare(spoken(control => control.description.includes(told)), []);
        }
        function test_thatAreOnlyReadAreSaid() {
            open([aSwitch("One", false), aText("Note")]);
            land(1);
            compare(spokenAs("Note").description, told);
            compare(alerts(), ["Found by the search: Note"]);
            tryVerify(() => alerts().length === 0);
            land(0);
            compare(alerts(), []);
            compare(spokenAs("Note").description, "");
        }
    }
    TableCase {
        name: "LandingInTables"
        stage: root

        function test_tellThatTheyAreFoundUntilAnotherOneIsCurrent() {
            open(many(60));
            bench.askToScroll(40, 2);
            show(many(60));
            host.item.land(40, "Found by the search");
            tryVerify(() => focusedRow() === "Row 40");
            compare(spokenAs("Row 40").description, "Found by the search. Position 41 of 60 in Enabled. Alt+Up and Alt+Down move it.");
            keyClick(Qt.Key_Down);
            compare(spokenAs("Row 40").description, "Position 41 of 60 in Enabled. Alt+Up and Alt+Down move it.");
        }
    }
}
