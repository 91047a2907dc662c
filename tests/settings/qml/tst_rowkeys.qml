import QtQuick
import QtTest
import Lumora

// Pages of rows by keyboard.
PageStage {
    id: root

    RowsCase {
        name: "RowKeys"
        stage: root

        function page() { return Array.from(host.item.children).find(child => child.item instanceof RowsPage).item }
        function scroller() { return Array.from(page().children).find(child => child instanceof Scroller) }
        function at() { return scroller().contentY }
        function end() { return scroller().contentHeight - scroller().height }
        function links(count, name = "Row") { return Array.from({ length: count }, (_, i) => aLink(name + " " + i)) }
        function texts(count) { return Array.from({ length: count }, (_, i) => aText("Text " + i)) }
        function rowItems() { return page().rows() }
        function focused() { return page().rowWithFocus()?.row.title ?? "" }
        function ringed() { return rowItems().filter(row => row.visualFocus ?? row.focused).map(row => row.row.title) }
        function press(key) {
            keyClick(key);
            return focused();
        }
        // As a key or the mouse does that opens a page.
        function enterBy(way) {
            stage.before.forceActiveFocus(Qt.OtherFocusReason);
            way === "key" ? keyClick(Qt.Key_Return) : mouseClick(stage.before);
            host.item.forceActiveFocus(Qt.OtherFocusReason);
        }
        function leave() { stage.before.forceActiveFocus(Qt.OtherFocusReason) }

        function test_movesBetweenControlsOfAllKindsByArrows() {
            open([aSwitch("A"), aText("Text"), aGroup("Group", "Footer"), aSlider(0, 1, 0.5, true), aField("B"), aSecureField("C"), aButton("D")]);
            const names = row => row.row.accessibleName;
            const stops = rowItems().map(names);
            compare(stops, ["A", "Group", "B", "C", "D"]);
            enterBy("mouse");
            for (const name of stops) {
                keyClick(Qt.Key_Down);
                compare(names(page().rowWithFocus()), name);
            }
            for (const name of ["C", "B", "Group", "A", "A"]) {
                keyClick(Qt.Key_Up);
                compare(names(page().rowWithFocus()), name);
            }
            compare(ringed(), ["A"]);
            compare(bench.changes, []);
        }
        function test_readsAPageOfTextsToItsEnd_data() {
            return [{ tag: "Down", key: Qt.Key_Down, back: Qt.Key_Up }, { tag: "Page Down", key: Qt.Key_PageDown, back: Qt.Key_PageUp },
                    { tag: "Space", key: Qt.Key_Space, back: Qt.Key_PageUp }, { tag: "End", key: Qt.Key_End, back: Qt.Key_Home }];
        }
        function test_readsAPageOfTextsToItsEnd(data) {
            open(texts(60));
            enterBy("mouse");
            keyClick(data.key);
            verify(at() > 0);
            for (let i = 0; i < 80 && at() < end(); ++i)
                keyClick(data.key);
            compare(at(), end());
            for (let i = 0; i < 80 && at() > 0; ++i)
                keyClick(data.back);
            compare(at(), 0);
        }
        function test_scrollsBackByTheSpaceBarWithShift() {
            open(texts(60));
            enterBy("mouse");
            keyClick(Qt.Key_Space);
            const there = at();
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Space, Qt.ShiftModifier);
            compare(at(), there);
        }
        function test_showsWhatStandsBetweenTwoControlsThatAreFarFromEachOther() {
            open([aLink("A"), ...texts(40), aLink("B"), ...texts(40)]);
            enterBy("mouse");
            compare(press(Qt.Key_Down), "A");
            let before = at();
            for (let i = 0; i < 200 && at() < end(); ++i) {
                keyClick(Qt.Key_Down);
                verify(at() - before <= scroller().line + Theme.groupGap, "nothing is skipped");
                before = at();
                if (focused() === "B")
                    verify(at() > 1000);
            }
            compare(at(), end());
            compare(focused(), "B");
            for (let i = 0; i < 200 && at() > 0; ++i) {
                keyClick(Qt.Key_Up);
                verify(before - at() <= scroller().line + 44);
                before = at();
            }
            compare(at(), 0);
            compare(focused(), "A");
        }
        function test_goesOnFromWhatIsInViewAfterScrolling() {
            open(links(60));
            enterBy("mouse");
            compare(press(Qt.Key_Down), "Row 0");
            keyClick(Qt.Key_PageDown);
            keyClick(Qt.Key_PageDown);
            compare(focused(), "Row 0");
            const there = at();
            verify(there > 1000);
            const now = press(Qt.Key_Down);
            verify(now !== "Row 1" && now !== "Row 0", now);
            verify(Math.abs(at() - there) <= 44, "the page stays where it is");
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Home);
            compare(at(), 0);
        }
        function test_leavesAControlTheKeysThatItUses() {
            open([aSlider(0, 1, 0.5, true), aField("Field", "text"), ...links(60)]);
            slider().forceActiveFocus(Qt.TabFocusReason);
            for (const key of [Qt.Key_Left, Qt.Key_Right, Qt.Key_PageUp, Qt.Key_PageDown, Qt.Key_Home, Qt.Key_End])
                keyClick(key);
            compare(at(), 0);
            compare(bench.changes.length, 6);
            field().forceActiveFocus(Qt.TabFocusReason);
            for (const key of [Qt.Key_End, Qt.Key_Space, Qt.Key_Home, Qt.Key_Left, Qt.Key_Right])
                keyClick(key);
            compare(at(), 0);
            compare(field().text, "text ");
            keyClick(Qt.Key_PageDown);
            verify(at() > 0);
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            verify(at() > 0, "a slider has no use for the space bar");
        }

        // -- options --

        function options() { return [aGroup(), anOption("One"), anOption("Two", true), anOption("Three")] }

        function test_goesAroundTheOptionsByArrowsAndStoresNothing() {
            open(options());
            enterBy("key");
            compare(focused(), "Two");
            const seen = [Qt.Key_Down, Qt.Key_Right, Qt.Key_Down, Qt.Key_Up, Qt.Key_Left].map(key => press(key));
            compare(seen, ["Three", "One", "Two", "One", "Three"]);
            compare(bench.taps, []);
            keyClick(Qt.Key_Space);
            compare(bench.taps, [3]);
        }
        function test_reachesOneOfTheOptionsByTab() {
            open(options());
            leave();
            keyClick(Qt.Key_Tab);
            compare(focused(), "Two");
            compare(ringed(), ["Two"]);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Tab);
            verify(stage.after.activeFocus);
            keyClick(Qt.Key_Backtab);
            compare(focused(), "Two");
            keyClick(Qt.Key_Backtab);
            verify(stage.before.activeFocus);
            for (const name of ["One", "Two", "Three"])
                verify(spokenAs(name).focusable, name);
        }
        function test_reachesTheFirstOptionByTabWhenNoneIsChosen() {
            open([anOption("One"), anOption("Two")]);
            leave();
            keyClick(Qt.Key_Tab);
            compare(focused(), "One");
        }

        // -- a page that opens, and comes back --

        function test_ringsTheFirstControlOfAPageThatAKeyOpens_data() {
            return [{ tag: "link", rows: [aText("Text"), aLink("A"), aLink("B")], first: "A" }, { tag: "switch", rows: [aSwitch("A")], first: "A" },
                    { tag: "chosen option", rows: options(), first: "Two" }];
        }
        function test_ringsTheFirstControlOfAPageThatAKeyOpens(data) {
            open(data.rows);
            enterBy("key");
            compare(focused(), data.first);
            compare(ringed(), [data.first]);
        }
        function test_ringsNothingOnAPageThatTheMouseOpens() {
            open([aLink("A")]);
            enterBy("mouse");
            compare(focused(), "");
            compare(ringed(), []);
            compare(press(Qt.Key_Down), "A");
        }
        function test_ringsTheRowThatLedAwayWhenAKeyLeadsBack_data() { return [{ tag: "key", ringed: ["B"] }, { tag: "mouse", ringed: [] }] }
        function test_ringsTheRowThatLedAwayWhenAKeyLeadsBack(data) {
            open([aLink("A"), aLink("B")]);
            mouseClick(rowItems()[1]);
            compare(focused(), "B");
            compare(ringed(), []);
            enterBy(data.tag);
            compare(focused(), "B");
            compare(ringed(), data.ringed);
        }
        function test_tapsARowOnceWhenTheKeyThatIsHeldOnItIsReleased_data() { return [{ tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }] }
        function test_tapsARowOnceWhenTheKeyThatIsHeldOnItIsReleased(data) {
            open([aLink("A"), aSwitch("B", false)]);
            rowItems()[0].forceActiveFocus(Qt.TabFocusReason);
            bench.repeatKey(host.item, data.key);
            keyRelease(data.key);
            keyPress(data.key);
            keyPress(data.key); // as a program sees it that has begun while the key was held
            compare(bench.taps, []);
            keyRelease(data.key);
            compare(bench.taps, [0]);
            keyPress(data.key);
            rowItems()[1].forceActiveFocus(Qt.TabFocusReason);
            keyRelease(data.key);
            rowItems()[0].forceActiveFocus(Qt.TabFocusReason);
            keyRelease(data.key);
            compare(bench.taps, [0]);
            compare(bench.changes, []);
        }
        function test_comesBackToARowThatAnAssistiveToolHasPressed() {
            open([aLink("A"), aLink("B")]);
            verify(bench.act(host.item, "B", "Press"));
            enterBy("key");
            compare(ringed(), ["B"]);
        }
        function test_keepsKeysWorkingWhenTheRowWithTheFocusGoes() {
            open(links(60));
            enterBy("mouse");
            keyClick(Qt.Key_Down);
            show(links(60, "Other"));
            tryVerify(() => rowItems()[0]?.row.title === "Other 0");
            keyClick(Qt.Key_PageDown);
            verify(at() > 0);
        }
    }
}
