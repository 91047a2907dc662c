import QtQuick
import QtTest
import Lumora

// A table as it is drawn and handled, with the bench in place of the main thread.
Item {
    id: root

    width: 390
    height: 700

    property var shownPage: null
    property int escapes: 0

    Shortcut {
        sequence: "Escape"
        onActivated: ++root.escapes
    }
    SignalSpy {
        id: views

        signalName: "viewChanged"
    }
    Rectangle {
        id: before

        activeFocusOnTab: true
        width: 1
        height: 1
    }
    Loader {
        id: host

        anchors.fill: parent
        active: root.shownPage !== null
        sourceComponent: Page { page: root.shownPage }
    }
    Rectangle {
        id: after

        activeFocusOnTab: true
        width: 1
        height: 1
    }

    TestCase {
        id: test

        name: "Table"
        when: windowShown

        readonly property var letters: [
            { header: "Enabled", footer: " ", rows: [{ title: "A", identifier: "a" }, { title: "B", identifier: "b" },
                                                     { title: "C", identifier: "c" }] },
            { header: "Disabled", footer: "Drag them.", rows: [{ title: "X", identifier: "x" }, { title: "Y", identifier: "y" }] },
        ]

        function init() { Theme.animated = false }
        function cleanup() {
            root.shownPage = null;
            root.escapes = 0;
            host.enabled = true;
            bench.plain = false;
            Theme.dark = false;
        }
        function open(sections) {
            root.shownPage = null;
            root.shownPage = bench.tablePage(sections);
            verify(waitForRendering(host.item));
            tryVerify(() => bench.viewports.length > 0);
            tryVerify(() => rows().every(row => row.spokenName.length > 0));
        }
        function all(item, matches) {
            let found = [];
            if (!item)
                return found;
            for (let i = 0; i < item.children.length; ++i) {
                if (matches(item.children[i]))
                    found.push(item.children[i]);
                found = found.concat(all(item.children[i], matches));
            }
            return found;
        }
        function table() { return all(host.item, item => item.reveal !== undefined)[0] }
        function rows() { return all(host.item, item => item.wanted !== undefined) }
        function row(title) { return rows().find(item => item.title === title) }
        function scroller() { return all(table(), item => item.scrollTo !== undefined)[0] }
        function overlay() { return all(host.item, item => item.take !== undefined)[0] }
        function focusedRow() { return rows().find(item => item.activeFocus)?.title }
        function ringed() { return rows().filter(item => item.focused).map(item => item.title) }
        // The titles from top to bottom as they stand, the gap as "_", the parts between sections as "|".
        function drawn() {
            const parts = rows().map(item => ({ y: item.y, text: item.empty ? "_" : item.title }));
            const captions = all(host.item, item => item.topPadding === 24 && item.text !== undefined);
            for (const caption of captions)
                parts.push({ y: caption.y, text: "|" });
            return parts.sort((one, other) => one.y - other.y).map(part => part.text).join("");
        }
        function places() { return rows().map(item => [item.title, item.y]).sort() }
        function middle(title) { return row(title).mapToItem(host.item, row(title).width - 30, 20) }
        function lift(title) {
            const hand = middle(title);
            mousePress(host.item, hand.x, hand.y);
            return hand;
        }
        function spokenRows() { return bench.spoken(host.item).filter(control => control.role === 0x22) }
        function spokenAs(name) { return bench.spoken(host.item).find(control => control.name === name) }
        function enter() {
            before.forceActiveFocus(Qt.OtherFocusReason);
            keyClick(Qt.Key_Tab);
        }

        // -- where everything stands --

        function test_standsHeadersRowsAndFootersWithoutGaps() {
            open(letters);
            compare(drawn(), "|ABC|XY");
            const heights = bench.viewports[bench.viewports.length - 1];
            compare(row("A").y, heights.headers[0]);
            compare(row("C").y, row("A").y + 80);
            compare(row("X").y, row("C").y + 40 + heights.footers[0] + heights.headers[1]);
            verify(heights.footers[0] > 15, "a footer of one space takes a line");
            compare(row("A").height, 40);
        }
        function test_isAsWideAsAPageOfRows() {
            open(letters);
            compare(row("A").x, Theme.inset);
            compare(row("A").width, 390 - 2 * Theme.inset);
        }
        function test_roundsTheFirstAndTheLastRowOfASection() {
            open(letters);
            compare(rows().filter(item => item.first).map(item => item.title), ["A", "X"]);
            compare(rows().filter(item => item.last).map(item => item.title), ["C", "Y"]);
        }
        function test_standsTheRowsOfAPlainTableFromSideToSideWithoutRoundCorners() {
            open(letters);
            const corner = () => bench.colorAt(host.item, row("A").x, row("A").y);
            verify(corner() !== Theme.cell.toString());
            bench.plain = true;
            bench.showTable(letters);
            compare([row("A").x, row("A").width], [0, 390]);
            compare(corner(), Theme.cell.toString());
        }
        function test_drawsSignsToDeleteAndInsertRowsAndMakesRoomForThem() {
            open([{ header: "Edited", rows: [{ title: "A" }, { title: "B", indented: true }, { title: "C", editingStyle: 1 },
                                             { title: "D", editingStyle: 2 }] }]);
            const left = title => all(row(title), item => item.fixedHeight !== undefined)[0].mapToItem(row(title), 0, 0).x;
            compare(["A", "B", "C", "D"].map(left), [16, 54, 54, 54]);
            const colors = title => [[19, 20], [27, 15], [27, 20]].map(([x, y]) =>
                bench.colorAt(host.item, row(title).x + x, row(title).y + y));
            const [ground, red, green] = [Theme.cell, Theme.warning, Theme.on].map(color => color.toString());
            compare(colors("B"), [ground, ground, ground]);
            compare(colors("C"), [red, red, "#ffffff"]);
            compare(colors("D"), [green, "#ffffff", "#ffffff"]);
        }
        function test_putsAnIconLeftOfTheTitle() {
            open([{ header: "Enabled", rows: [{ title: "With", icon: "red" }, { title: "Without" }] }]);
            const picture = grabImage(host.item);
            const y = row("With").y + 20;
            compare(picture.pixel(2 * Theme.inset + 14, y), "#ff0000");
            verify(picture.pixel(2 * Theme.inset + 14, y + 40) !== "#ff0000");
            verify(row("With").hasIcon && !row("Without").hasIcon);
        }
        function test_showsARowWithoutATitleAndAMark() {
            open([{ header: "Enabled", rows: [{ identifier: "gone" }, { title: "Chosen", marked: true }] }]);
            compare(rows().length, 2);
            compare(rows()[0].title, "");
            compare(rows()[1].marked, true);
        }
        function test_makesItemsOnlyForRowsInViewHoweverManyThereAre() {
            open([{ header: "Enabled", count: 10000 }, { header: "Disabled", count: 3 }]);
            verify(rows().length < 40, rows().length + " items");
            for (const y of [10000, 200000, 400000 - 2000, 0]) {
                scroller().contentY = y;
                tryVerify(() => rows().some(item => item.y >= y && item.y < y + 60 && item.title.length > 0));
                verify(rows().length < 40, rows().length + " items at " + y);
            }
        }
        function test_scrollsExactlyAsFarAsThereIsSomething() {
            open([{ header: "Enabled", count: 10000 }, { header: "Disabled", count: 3 }]);
            enter();
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 2");
            const last = rows().find(item => item.activeFocus);
            const place = last.mapToItem(host.item, 0, 0).y;
            verify(place > 600 && place + 40 <= 700, "at " + place);
        }

        // -- what is reported --

        function test_tellsOfTheRowsInViewOnlyWhenTheyChange() {
            open([{ header: "Enabled", count: 100 }]);
            const before = bench.viewports.length;
            const view = scroller();
            view.contentY = 1;
            view.contentY = 8;
            view.contentY = 0;
            view.contentY = 400;
            tryVerify(() => bench.viewports.length === before + 1);
            const now = bench.viewports[before];
            compare(now.top, 400 - 160);
            compare(now.bottom, 400 + 700 + 160);
            waitForRendering(host.item);
            view.contentY = 401;
            waitForRendering(host.item);
            compare(bench.viewports.length, before + 1);
        }
        function test_tellsAtMostOfAFewViewportsWhenAPageOpens() {
            open(letters);
            verify(bench.viewports.length <= 2, bench.viewports.length + " reports");
        }

        // -- in the hand --

        function test_movesARowToWhereItIsDropped_data() {
            return [
                { tag: "down by two", title: "A", by: 80, during: "|BC_|XY", after: "|BCA|XY", move: [0, 0, 0, 2] },
                { tag: "up by one", title: "B", by: -40, during: "|_AC|XY", after: "|BAC|XY", move: [0, 1, 0, 0] },
                { tag: "to the other section", title: "A", onto: "X", during: "|BC|_XY", after: "|BC|AXY", move: [0, 0, 1, 0] },
                { tag: "back to the first section", title: "Y", onto: "B", during: "|A_BC|X", after: "|AYBC|X", move: [1, 1, 0, 1] },
                { tag: "far beyond the end", title: "A", by: 5000, during: "|BC|XY_", after: "|BC|XYA", move: [0, 0, 1, 2] },
                { tag: "far above the beginning", title: "X", by: -5000, during: "|_ABC|Y", after: "|XABC|Y", move: [1, 0, 0, 0] },
                { tag: "its own place", title: "B", by: 3, during: "|A_C|XY", after: "|ABC|XY", move: [0, 1, 0, 1] },
            ];
        }
        function test_movesARowToWhereItIsDropped(data) {
            open(letters);
            const hand = lift(data.title);
            // Once the row is out, what is beneath it has moved up.
            const by = data.onto ? middle(data.onto).y - hand.y - (data.title === "A" ? 40 : 0) : data.by;
            for (const part of [0.3, 0.6, 1])
                mouseMove(host.item, hand.x, hand.y + by * part);
            compare(drawn(), data.during);
            compare(bench.moves, []);
            verify(overlay().visible);
            mouseRelease(host.item, hand.x, hand.y + by);
            compare(bench.moves, [data.move]);
            compare(drawn(), data.after);
            verify(!overlay().visible);
            bench.takeAll();
            compare(drawn(), data.after);
            compare(focusedRow(), data.title);
            compare(ringed(), []);
        }
        function test_movesARowIntoAnEmptySectionAndOutOfOne() {
            open([{ header: "Enabled", footer: " " }, { header: "Disabled", rows: [{ title: "X" }, { title: "Y" }] }]);
            let hand = lift("Y");
            mouseMove(host.item, hand.x, 60);
            compare(drawn(), "|_|X");
            mouseRelease(host.item, hand.x, 60);
            compare(bench.moves, [[1, 1, 0, 0]]);
            bench.takeAll();
            hand = lift("X");
            mouseMove(host.item, hand.x, 60);
            mouseRelease(host.item, hand.x, 60);
            compare(bench.moves[1].slice(0, 3), [1, 0, 0]);
            bench.takeAll();
            compare(rows().length, 2);
            hand = lift(rows()[0].title);
            mouseMove(host.item, hand.x, 690);
            mouseRelease(host.item, hand.x, 690);
            compare(bench.moves[2], [0, 0, 1, 0]);
        }
        function test_movesARowByTouch() {
            open(letters);
            const hand = middle("A");
            const finger = touchEvent(host.item);
            finger.press(0, host.item, hand.x, hand.y).commit();
            for (const by of [20, 40, 60, 80])
                finger.move(0, host.item, hand.x, hand.y + by).commit();
            tryVerify(() => drawn() === "|BC_|XY");
            compare(table().contentY, 0, "the page does not scroll instead");
            finger.release(0, host.item, hand.x, hand.y + 80).commit();
            compare(bench.moves, [[0, 0, 0, 2]]);
        }
        function test_liftsByTheHandleOnly() {
            open([{ header: "Enabled", rows: [{ title: "A" }, { title: "Fixed", fixed: true }] }]);
            mousePress(host.item, 100, row("A").y + 20);
            verify(!overlay().visible);
            mouseRelease(host.item, 100, row("A").y + 20);
            const hand = lift("Fixed");
            verify(!overlay().visible);
            mouseRelease(host.item, hand.x, hand.y);
            compare(bench.moves, []);
        }
        function test_putsTheRowBackWithEscapeAndMovesNothing() {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            compare(drawn(), "|BC_|XY");
            keyClick(Qt.Key_Escape);
            compare(drawn(), "|ABC|XY");
            mouseMove(host.item, hand.x, hand.y + 70);
            mouseRelease(host.item, hand.x, hand.y + 70);
            compare(bench.moves, []);
            compare(root.escapes, 0, "the page stays");
            keyClick(Qt.Key_Escape);
            compare(root.escapes, 1);
        }
        function test_putsTheRowBackWhenThePageIsCovered_data() {
            return [{ tag: "waiting", property: "enabled" }, { tag: "covered", property: "visible" }];
        }
        function test_putsTheRowBackWhenThePageIsCovered(data) {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            host.item[data.property] = false;
            compare(table().dragging, false);
            mouseRelease(host.item, hand.x, hand.y + 80);
            host.item[data.property] = true;
            compare(bench.moves, []);
            compare(drawn(), "|ABC|XY");
        }
        function test_keepsARowInTheHandWhenASnapshotComes() {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            bench.showTable(letters);
            compare(drawn(), "|BC_|XY");
            mouseRelease(host.item, hand.x, hand.y + 80);
            compare(bench.moves, [[0, 0, 0, 2]]);
        }
        function test_letsGoOfARowThatASnapshotNoLongerHas() {
            open(letters);
            const hand = lift("Y");
            bench.showTable([letters[0], { header: "Disabled", rows: [{ title: "X" }] }]);
            verify(!table().dragging);
            mouseRelease(host.item, hand.x, hand.y);
            compare(bench.moves, []);
            compare(drawn(), "|ABC|X");
        }
        function test_keepsTheUsersOrderUntilEveryMoveHasArrived() {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            mouseRelease(host.item, hand.x, hand.y + 80);
            bench.showTable(letters); // from before the move
            compare(drawn(), "|BCA|XY");
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(drawn(), "|BAC|XY");
            bench.showTable(letters);
            compare(drawn(), "|BAC|XY");
            bench.takeAll();
            compare(drawn(), "|BAC|XY");
            bench.showTable(letters);
            compare(drawn(), "|ABC|XY", "the page has thought better of it");
        }
        function test_scrollsAtTheEdgesWhileARowIsInTheHand() {
            open([{ header: "Enabled", count: 200 }, { header: "Disabled", count: 2 }]);
            const hand = lift("Row 5");
            mouseMove(host.item, hand.x, 650);
            tryVerify(() => table().contentY > 20);
            mouseMove(host.item, hand.x, 699);
            tryVerify(() => table().contentY > 2500, 20000);
            verify(rows().length < 45);
            tryVerify(() => rows().filter(item => item.y > table().contentY && item.title.length > 0).length > 10);
            mouseMove(host.item, hand.x, 350);
            const stopped = table().contentY;
            mouseRelease(host.item, hand.x, 350);
            compare(table().contentY, stopped);
            compare(bench.moves.length, 1);
            verify(bench.moves[0][3] > 60, "dropped at " + bench.moves[0]);
            compare(focusedRow(), "Row 5");
            bench.takeAll();
            compare(focusedRow(), "Row 5");
        }
        function test_letsTheOthersGlideAndTheRowComeDownWhenAnimated() {
            Theme.animated = true;
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 40);
            const place = row("A").y;
            verify(row("B").y > place - 40);
            tryVerify(() => row("B").y === place - 40);
            mouseRelease(host.item, hand.x, hand.y + 40);
            verify(overlay().visible);
            tryVerify(() => !overlay().visible);
            compare(drawn(), "|BAC|XY");
        }

        function test_doesNotScrollForAPressNearAnEdge_data() {
            return [{ tag: "bottom", y: 690, away: -30, scrolled: y => y > 420 }, { tag: "top", y: 10, away: 30, scrolled: y => y < 380 }];
        }
        function test_doesNotScrollForAPressNearAnEdge(data) {
            open([{ header: "Enabled", count: 200 }]);
            scroller().contentY = 400;
            tryVerify(() => rows().some(item => item.y > 1100 && item.spokenName.length > 0));
            mousePress(host.item, 340, data.y);
            verify(table().dragging);
            for (let frame = 0; frame < 10; ++frame)
                waitForRendering(host.item, 20);
            compare(scroller().contentY, 400);
            mouseMove(host.item, 340, data.y + data.away);
            mouseMove(host.item, 340, data.y);
            tryVerify(() => data.scrolled(scroller().contentY));
            mouseMove(host.item, 340, 350);
            mouseRelease(host.item, 340, 350);
        }
        function test_makesRoomWhereTheRowWillStand() {
            open([{ header: "Enabled", footer: " " }, { header: "Disabled", rows: [{ title: "X" }, { title: "Y" }] }]);
            const hand = lift("Y");
            mouseMove(host.item, hand.x, 60);
            const during = places();
            mouseRelease(host.item, hand.x, 60);
            compare(places(), during);
            bench.takeAll();
            compare(places(), during);
        }
        function test_endsALandingForTheNextHandOrKey_data() {
            return [{ tag: "key" }, { tag: "hand" }];
        }
        function test_endsALandingForTheNextHandOrKey(data) {
            Theme.animated = true;
            open(letters);
            let hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            mouseRelease(host.item, hand.x, hand.y + 80);
            verify(overlay().visible);
            if (data.tag === "key") {
                keyClick(Qt.Key_Down, Qt.AltModifier);
                verify(!overlay().visible);
            } else {
                hand = lift("Y");
                compare(rows().filter(item => item.empty).map(item => item.title), ["Y"]);
                mouseRelease(host.item, hand.x, hand.y);
                tryVerify(() => !overlay().visible);
            }
            compare(rows().filter(item => item.empty).length, 0);
        }
        function test_putsTheRowBackWhenTheNumberOfSectionsChanges() {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            bench.showTable([letters[0]]);
            verify(!table().dragging);
            compare(drawn(), "|ABC");
            mouseRelease(host.item, hand.x, hand.y + 80);
            compare(bench.moves, []);
            bench.showTable([]);
            compare(drawn(), "");
            compare([table().table.topOf(0), table().table.heightOf(0)], [0, 0]);
            bench.showTable(letters);
            compare(drawn(), "|ABC|XY");
        }
        function test_keepsTheFocusWhileARowIsInTheHand() {
            open(letters);
            const hand = lift("B");
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Backtab);
            compare(focusedRow(), "B");
            compare(ringed(), []);
            mouseRelease(host.item, hand.x, hand.y);
        }
        function test_putsTheRowBackForThePage() {
            open(letters);
            const hand = lift("A");
            mouseMove(host.item, hand.x, hand.y + 80);
            host.item.putBack();
            mouseRelease(host.item, hand.x, hand.y + 80);
            compare(bench.moves, []);
            compare(drawn(), "|ABC|XY");
        }
        function test_beginsAtTheTopWhenTheTableIsAnotherOne() {
            const many = [{ header: "Enabled", count: 100 }];
            open(many);
            enter();
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 99");
            bench.showTable(many);
            verify(table().contentY > 0, "a newer snapshot of the same one changes nothing");
            compare(table().table.current, 99);
            bench.showOtherTable(many);
            compare(table().contentY, 0);
            tryVerify(() => focusedRow() === "Row 0");
            tryVerify(() => rows().length > 15 && rows().every(item => item.title.length > 0));
        }
        function test_standsOnWholePixels() {
            open([{ header: "Enabled", footer: "A footer.\nAnother line.", count: 100 }]);
            const heights = bench.viewports[bench.viewports.length - 1];
            for (const height of heights.headers.concat(heights.footers))
                compare(height, Math.round(height));
            scroller().contentY = 100.4;
            compare(scroller().contentItem.y, -100);
        }
        function test_drawsHeadersAsTheyAreWritten() {
            open(letters);
            const header = all(host.item, item => item.text === "Enabled")[0];
            compare(header.font.capitalization, Font.MixedCase);
        }
        function test_drawsAHostedViewAnewOnlyWhenItIsAnother() {
            open(letters);
            views.target = root.shownPage;
            views.clear();
            bench.showTable(letters);
            compare(views.count, 0);
            bench.paint("red");
            compare(views.count, 1);
            bench.showTable(letters);
            compare(views.count, 1);
        }

        // -- by keyboard --

        function test_takesKeysWhenItOpensAndShowsTheFocusOnceOneIsUsed() {
            open(letters);
            host.item.forceActiveFocus(Qt.OtherFocusReason);
            compare(focusedRow(), "A");
            compare(ringed(), []);
            keyClick(Qt.Key_Tab);
            compare(focusedRow(), "A");
            compare(ringed(), ["A"]);
            keyClick(Qt.Key_Tab);
            verify(after.activeFocus);
        }
        function test_staysWhereItIsWhenTheFocusComesBackByItself() {
            open([{ header: "Enabled", count: 200 }]);
            const hand = lift("Row 1");
            mouseRelease(host.item, hand.x, hand.y);
            scroller().contentY = 3000;
            host.enabled = false;
            host.enabled = true;
            before.forceActiveFocus(Qt.OtherFocusReason);
            host.item.forceActiveFocus(Qt.ActiveWindowFocusReason);
            verify(table().activeFocus);
            compare(scroller().contentY, 3000);
            compare(ringed(), []);
            enter();
            compare(focusedRow(), "Row 1");
            compare(ringed(), ["Row 1"]);
            verify(scroller().contentY < 100, "a key reveals it");
        }
        function test_movesARowWhoseCellHasNotComeAndFocusesItOnceItHasAName() {
            open([{ header: "Enabled", count: 300 }]);
            enter();
            bench.busy = true;
            for (let i = 0; i < 6; ++i)
                keyClick(Qt.Key_PageDown);
            const from = table().table.current;
            compare(focusedRow(), undefined);
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(bench.moves, [[0, from, 0, from - 1]]);
            bench.busy = false;
            bench.takeAll();
            tryVerify(() => focusedRow() === "Row " + from);
            compare(table().table.current, from - 1);
        }
        function test_isOneStopForTab() {
            open(letters);
            enter();
            compare(focusedRow(), "A");
            compare(ringed(), ["A"]);
            keyClick(Qt.Key_Tab);
            verify(after.activeFocus);
            keyClick(Qt.Key_Backtab);
            compare(focusedRow(), "A");
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Backtab);
            verify(before.activeFocus);
            keyClick(Qt.Key_Tab);
            compare(focusedRow(), "B");
        }
        function test_walksOverTheRowsOfAllSections() {
            open(letters);
            enter();
            const seen = [];
            for (let i = 0; i < 6; ++i) {
                seen.push(focusedRow());
                keyClick(Qt.Key_Down);
            }
            compare(seen.join(""), "ABCXYY");
            keyClick(Qt.Key_Home);
            compare(focusedRow(), "A");
            keyClick(Qt.Key_Up);
            compare(focusedRow(), "A");
            keyClick(Qt.Key_End);
            compare(focusedRow(), "Y");
            keyClick(Qt.Key_Up);
            compare(focusedRow(), "X");
            compare(bench.moves, []);
        }
        function test_walksByPages() {
            open([{ header: "Enabled", count: 100 }]);
            enter();
            keyClick(Qt.Key_PageDown);
            tryVerify(() => focusedRow() === "Row 16");
            keyClick(Qt.Key_PageDown);
            tryVerify(() => focusedRow() === "Row 32");
            verify(table().contentY > 0);
            keyClick(Qt.Key_PageUp);
            keyClick(Qt.Key_PageUp);
            keyClick(Qt.Key_PageUp);
            tryVerify(() => focusedRow() === "Row 0");
            compare(table().contentY, 0);
        }
        function test_movesARowByKeyboardAcrossTheBorderAndKeepsTheFocusOnIt() {
            open(letters);
            enter();
            keyClick(Qt.Key_End);
            const seen = [drawn()];
            for (let i = 0; i < 6; ++i) {
                keyClick(Qt.Key_Up, Qt.AltModifier);
                compare(focusedRow(), "Y");
                compare(ringed(), ["Y"]);
                seen.push(drawn());
            }
            compare(seen, ["|ABC|XY", "|ABC|YX", "|ABCY|X", "|ABYC|X", "|AYBC|X", "|YABC|X", "|YABC|X"]);
            compare(bench.moves, [[1, 1, 1, 0], [1, 0, 0, 3], [0, 3, 0, 2], [0, 2, 0, 1], [0, 1, 0, 0]]);
            bench.takeAll();
            compare(drawn(), "|YABC|X");
            compare(focusedRow(), "Y");
        }
        function test_movesTheLastRowIntoAnEmptySectionByKeyboard() {
            open([{ header: "Enabled", rows: [{ title: "A" }] }, { header: "Disabled" }]);
            enter();
            keyClick(Qt.Key_Up, Qt.AltModifier);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, [[0, 0, 1, 0]]);
            compare(drawn(), "||A");
            keyClick(Qt.Key_Up, Qt.AltModifier);
            compare(bench.moves[1], [1, 0, 0, 0]);
        }
        function test_movesNoRowThatIsFixed() {
            open([{ header: "Enabled", rows: [{ title: "A", fixed: true }, { title: "B" }] }]);
            enter();
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(bench.moves, []);
        }
        function test_keepsAMovedRowInView() {
            open([{ header: "Enabled", count: 60 }]);
            enter();
            for (let i = 0; i < 30; ++i)
                keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(focusedRow(), "Row 0");
            const place = rows().find(item => item.activeFocus).mapToItem(host.item, 0, 0).y;
            verify(table().contentY > 0);
            verify(place >= 0 && place + 40 <= 700, "at " + place);
            bench.takeAll();
            compare(focusedRow(), "Row 0");
        }
        function test_keepsTheFocusWhenASnapshotComesAndWhenItScrollsAway() {
            open([{ header: "Enabled", count: 200 }]);
            enter();
            keyClick(Qt.Key_Down);
            const focused = rows().find(item => item.activeFocus);
            bench.showTable([{ header: "Enabled", count: 200 }]);
            verify(focused.activeFocus);
            scroller().contentY = 5000;
            tryVerify(() => rows().some(item => item.title === "Row 125"));
            verify(focused.activeFocus, "the same item has the focus");
            compare(focused.title, "Row 1");
            keyClick(Qt.Key_Down);
            compare(focusedRow(), "Row 2");
            verify(table().contentY < 100, "back to where the focus is");
        }
        function test_isNoStopWhenThereAreNoRows() {
            open([{ header: "Enabled" }, { header: "Disabled" }]);
            enter();
            verify(after.activeFocus);
        }

        // -- assistive tools --

        function test_speaksOfTheListItsRowsHeadersAndFooters() {
            open([{ header: "Enabled", footer: " ", rows: [{ title: "A", identifier: "a" }, { identifier: "gone" }] },
                  { header: "Disabled", footer: "Drag them.", rows: [{ title: "X", identifier: "x", fixed: true }] }]);
            const all = bench.spoken(host.item);
            const list = all.findIndex(control => control.role === 0x21);
            compare(all[list].name, "Bench");
            compare(all.slice(list + 1, list + 7).map(control => control.name),
                    ["Enabled", "A", "gone", "Disabled", "X", "Drag them."]);
            compare(all[list + 1].role, spokenAs("Disabled").role);
            compare(spokenAs("A").description, "Position 1 of 2 in Enabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("gone").description, "Position 2 of 2 in Enabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("X").description, "Position 1 of 1 in Disabled.");
            compare(spokenRows().map(control => control.name), ["A", "gone", "X"]);
            verify(spokenRows().every(control => control.focusable));
        }
        function test_movesARowOnceByAssistiveAction() {
            open(letters);
            verify(bench.act(host.item, "C", "Increase"));
            compare(bench.moves, [[0, 2, 1, 0]]);
            compare(focusedRow(), "C");
            compare(spokenAs("C").description, "Position 1 of 3 in Disabled. Alt+Up and Alt+Down move it.");
            compare(spokenAs("C").focused, true);
            verify(bench.act(host.item, "C", "Decrease"));
            compare(bench.moves.length, 2);
            compare(bench.moves[1], [1, 0, 0, 3 - 1]);
            compare(focusedRow(), "C");
        }
        function test_speaksOfTheFocusedRowAsItWalksAndAsARowMoves() {
            open(letters);
            enter();
            keyClick(Qt.Key_Down);
            compare(spokenRows().filter(control => control.focused).map(control => control.name), ["B"]);
            keyClick(Qt.Key_Down, Qt.AltModifier);
            compare(spokenRows().filter(control => control.focused).map(control => control.name), ["B"]);
        }
    }
}
