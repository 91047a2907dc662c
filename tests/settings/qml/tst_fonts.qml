import QtQuick
import QtTest
import Lumora

// A table whose rows can be tapped, and titles that are drawn in fonts of their own, with the bench in place of the main
// thread. In the bench's fonts every letter is a box, by whose height they are told apart.
PageStage {
    id: root

    SignalSpy {
        id: grounds

        signalName: "groundChanged"
    }

    TableCase {
        name: "Fonts"
        stage: root

        readonly property var options: [{ header: "Fonts", rows: [{ title: "A", marked: true }, { title: "B" }, { title: "C" }] }]
        // Row 7 is drawn in the font "many0007.ttf".
        readonly property var manyFonts: [{ header: "Fonts", rows: Array.from({ length: 200 }, (_, i) => {
            const number = String(i).padStart(4, "0");
            return { title: "Many" + number, font: `many${number}.ttf` };
        }) }]

        function init() {
            beginAsUsual();
            bench.selectable = true;
        }
        function place(title) { return row(title).mapToItem(host.item, 0, 0).y }
        function shown() { return rows().filter(item => place(item.title) < 700 && place(item.title) > -40) }
        function drawnTitle(title) { return find(row(title), item => item instanceof FontTitle) }
        function usualTitle(title) { return find(row(title), item => item instanceof Text) }
        function tapOn(title) { mouseClick(host.item, 100, place(title) + 20) }
        // From where to where there is ink in a column of a picture, within a row that begins at y.
        function ink(picture, x, y) {
            const ground = picture.pixel(x, y + 2);
            let top = -1, bottom = -1;
            for (let i = 2; i < 38; ++i)
                if (!Qt.colorEqual(picture.pixel(x, y + i), ground)) {
                    top = top < 0 ? i : top;
                    bottom = i;
                }
            return top < 0 ? 0 : bottom - top + 1;
        }
        function inkOf(title, x) { return ink(grabImage(host.item), x, place(title)) }

        function groundOf(title) { return colorAt(195, place(title) + 20) }
        // Within the first letter of a title.
        function letterX(title) { return row(title).x + Theme.inset + 4 }

        // -- taps --

        function test_tellsOfATap_data() {
            const byKey = key => () => {
                enter();
                keyClick(Qt.Key_Down);
                keyClick(key);
            };
            const byAction = action => () => verify(bench.act(host.item, "B", action));
            return [
                { tag: "mouse", tap: () => tapOn("B") },
                { tag: "mouse on its mark", at: [0, 0],
                  tap: () => mouseClick(host.item, row("A").x + row("A").width - 20, place("A") + 20) },
                { tag: "Return", tap: byKey(Qt.Key_Return) }, { tag: "Enter", tap: byKey(Qt.Key_Enter) },
                { tag: "Space", tap: byKey(Qt.Key_Space) }, { tag: "press", tap: byAction("Press") },
                { tag: "toggle", tap: byAction("Toggle") },
            ];
        }
        function test_tellsOfATap(data) {
            open(options);
            data.tap();
            compare(bench.tableTaps, [data.at ?? [0, 1]]);
            data.tap();
            compare(bench.tableTaps.length, 2);
            compare(bench.moves, []);
        }
        function test_showsATappedRowSelectedUntilThePageDeselectsIt() {
            open(options);
            tapOn("B");
            compare(groundOf("B"), Theme.cellDown.toString(), "before the page has taken the tap");
            bench.selected = 1;
            show(options);
            bench.takeAll();
            compare(groundOf("B"), Theme.cellDown.toString(), "and after that");
            bench.selected = -1;
            show(options);
            compare(groundOf("B"), Theme.cell.toString());
        }
        function test_fadesADeselectedRowIfThePageAsksForIt_data() {
            return [{ tag: "animated", animated: true }, { tag: "at once", animated: false }];
        }
        function test_fadesADeselectedRowIfThePageAsksForIt(data) {
            Theme.animated = true;
            open(options);
            tapOn("B");
            grounds.target = row("B");
            grounds.clear();
            bench.deselectsAnimated = data.animated;
            show(options);
            bench.takeAll();
            compare(row("B").fading, data.animated);
            tryCompare(row("B"), "fading", false);
            compare(grounds.count > 3, data.animated, grounds.count + " changes");
            compare(groundOf("B"), Theme.cell.toString());
        }
        function test_tintsTheRowUnderTheMouse() {
            open(options);
            const plain = groundOf("B");
            mouseMove(host.item, 100, place("B") + 20);
            verify(groundOf("B") !== plain);
            mouseMove(host.item, 100, place("A") + 20);
            compare(groundOf("B"), plain);
        }
        function test_tellsOfATapByTouchButNotOfOneThatScrolls() {
            open(many(200));
            const finger = touchEvent(host.item);
            finger.press(0, host.item, 100, place("Row 3") + 20).commit();
            finger.release(0, host.item, 100, place("Row 3") + 20).commit();
            compare(bench.tableTaps, [[0, 3]]);
            finger.press(0, host.item, 100, 400).commit();
            let y = 400;
            tryVerify(() => {
                y = Math.max(100, y - 20);
                finger.move(0, host.item, 100, y).commit(); // the window takes up one with each frame
                return scroller().contentY > 0;
            });
            finger.release(0, host.item, 100, y).commit();
            compare(bench.tableTaps.length, 1);
        }
        function test_scrollsToTheRowThatAKeyTaps() {
            open(many(200));
            enter();
            scroller().contentY = 3000;
            keyClick(Qt.Key_Return);
            compare(bench.tableTaps, [[0, 0]]);
            verify(scroller().contentY < 100);
        }
        function test_goesOnFromTheTappedRowByKeyboard() {
            open(options);
            tapOn("B");
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Space);
            compare(bench.tableTaps, [[0, 1], [0, 2]]);
        }
        function test_ignoresTapsOnATableThatIsBeingEdited() {
            bench.selectable = false;
            open(options);
            tapOn("B");
            enter();
            keyClick(Qt.Key_Return);
            verify(!bench.act(host.item, "C", "Press"), "there is no such action");
            compare(bench.tableTaps, []);
        }
        function test_hasNoHandles() {
            open(options);
            verify(rows().every(item => !item.movable));
            const y = place("A");
            mouseDrag(host.item, row("A").x + row("A").width - 20, y + 20, 0, 60);
            compare(bench.moves, []);
        }
        function test_showsWhichRowIsPressed() {
            open(options);
            mousePress(host.item, 100, place("B") + 20);
            compare(rows().filter(item => item.down).map(item => item.title), ["B"]);
            mouseRelease(host.item, 100, place("B") + 20);
            bench.takeAll();
            compare(rows().filter(item => item.down).length, 0);
        }
        function test_tellsAssistiveToolsWhichRowIsMarked() {
            open(options);
            compare(["A", "B", "C"].map(name => spokenAs(name).checked), [true, false, false]);
            verify(["A", "B", "C"].every(name => spokenAs(name).checkable && spokenAs(name).focusable));
            compare(spokenAs("B").role, Accessible.RadioButton);
            verify(!bench.act(host.item, "B", "Move down"), "there is nothing to move");
            compare(spokenAs("B").description, "Position 2 of 3 in Fonts.");
            show([{ header: "Fonts", rows: [{ title: "A" }, { title: "B", marked: true }, { title: "C" }] }]);
            compare(["A", "B", "C"].map(name => spokenAs(name).checked), [false, true, false]);
        }

        // -- scrolled where the page wants it --

        function test_scrollsToARowThatThePageWantsFromTheFirstSnapshotOnAndGoesOnThereByKeyboard() {
            bench.askToScroll(100, 2);
            open(many(200));
            fuzzyCompare(place("Row 100"), 330, 1);
            const y = scroller().contentY;
            enter();
            keyClick(Qt.Key_Space);
            compare(bench.tableTaps, [[0, 100]]);
            compare(scroller().contentY, y);
        }
        function test_scrollsNoFurtherThanItGoes() {
            bench.askToScroll(0, 2);
            open(many(200));
            compare(scroller().contentY, 0);
            bench.askToScroll(199, 2);
            show(many(200));
            tryVerify(() => row("Row 199"));
            compare(scroller().contentY, scroller().contentHeight - 700);
        }
        function test_scrollsOnceForEachRequest() {
            bench.askToScroll(100, 2);
            open(many(200));
            const y = scroller().contentY;
            scroller().contentY = 0;
            show(many(200));
            compare(scroller().contentY, 0);
            bench.askToScroll(100, 2);
            show(many(200));
            compare(scroller().contentY, y);
        }
        function test_scrollsOnlyAsFarAsNeededWhenAnyPlaceWillDo() {
            open(many(200));
            bench.askToScroll(5, 0);
            show(many(200));
            compare(scroller().contentY, 0);
            bench.askToScroll(30, 0);
            show(many(200));
            tryVerify(() => row("Row 30"));
            fuzzyCompare(place("Row 30"), 660, 1);
        }
        function test_glidesWhenThePageAsksForIt() {
            Theme.animated = true;
            open(many(200));
            bench.askToScroll(100, 2, true);
            show(many(200));
            verify(scroller().contentY < 1000);
            tryVerify(() => row("Row 100") && Math.abs(place("Row 100") - 330) < 1);
        }
        function test_doesNotScrollToAMissingRow() {
            bench.askToScroll(500, 2);
            open(many(200));
            compare(scroller().contentY, 0);
        }

        // -- titles in fonts of their own --

        function test_drawsATitleInTheFontOfItsCell_data() {
            return [
                { tag: "one file", font: "twin1.ttf", height: 0.3 }, { tag: "another", font: "twin2.ttf", height: 0.7 },
                { tag: "first face", font: "collection.ttc", height: 0.2 }, { tag: "second face", font: "collection.ttc#1", height: 0.9 },
                { tag: "plain", font: "vary.ttf", height: 0.5 }, { tag: "thin instance", font: "vary.ttf#65536", height: 0.2 },
                { tag: "black instance", font: "vary.ttf#196608", height: 0.8 },
            ];
        }
        function test_drawsATitleInTheFontOfItsCell(data) {
            open([{ header: "Fonts", rows: [{ title: "HHHH", font: data.font }] }]);
            verify(drawnTitle("HHHH").drawn);
            verify(!usualTitle("HHHH").visible);
            const height = inkOf("HHHH", letterX("HHHH"));
            verify(Math.abs(height - 17 * data.height) <= 2, height + " points high");
        }
        function test_hasTheBaselineAtTheSameHeightForEveryFont() {
            open([{ header: "Fonts", rows: [{ title: "One", font: "twin1.ttf" }, { title: "Two", font: "twin2.ttf" }] }]);
            for (const title of ["One", "Two"]) {
                verify(colorAt(letterX(title), place(title) + 24) !== Theme.cell.toString());
                compare(colorAt(letterX(title), place(title) + 25), Theme.cell.toString());
            }
        }
        function test_cutsOffWhatIsHigherThanTheRow() {
            open([{ header: "Fonts", rows: [{ title: "Above" }, { title: "Tall", font: "tall.ttf" }] }]);
            compare(row("Tall").height, 40);
            verify(drawnTitle("Tall").drawn);
            verify(colorAt(letterX("Tall"), place("Tall") + 1) !== Theme.cell.toString());
            compare(colorAt(letterX("Tall"), place("Above") + 4), Theme.cell.toString());
        }
        function test_followsTheColoursOfTheTheme() {
            open([{ header: "Fonts", rows: [{ title: "HH", font: "twin2.ttf" }] }]);
            compare(colorAt(letterX("HH"), place("HH") + 20), "#000000");
            Theme.dark = true;
            compare(colorAt(letterX("HH"), place("HH") + 20), "#ffffff");
        }
        function test_usesTheUsualFontForWhatItsOwnCannotShow_data() {
            return [{ tag: "letters", font: "dumb.ttf" }, { tag: "no file", font: "gone.ttf" }, { tag: "no font", font: "../fonts.conf" },
                    { tag: "a folder", font: "." }, { tag: "no such face", font: "collection.ttc#7" },
                    { tag: "no such instance", font: "vary.ttf#6553600" }];
        }
        function test_usesTheUsualFontForWhatItsOwnCannotShow(data) {
            open([{ header: "Fonts", rows: [{ title: "Plain", font: data.font }] }]);
            verify(!drawnTitle("Plain").drawn);
            verify(usualTitle("Plain").visible);
        }
        function test_changesWithTheCellsFont() {
            open([{ header: "Fonts", rows: [{ title: "HH", font: "twin1.ttf" }] }]);
            const low = inkOf("HH", letterX("HH"));
            show([{ header: "Fonts", rows: [{ title: "HH", font: "twin2.ttf" }] }]);
            tryVerify(() => inkOf("HH", letterX("HH")) > low + 4);
            show([{ header: "Fonts", rows: [{ title: "HH", font: "dumb.ttf" }] }]);
            tryVerify(() => usualTitle("HH").visible);
            show([{ header: "Fonts", rows: [{ title: "HH" }] }]);
            verify(usualTitle("HH").visible);
        }
        function test_cutsATitleThatIsTooLongAndNeverShrinksIt_data() {
            return [{ tag: "fits", length: 20, inkEnd: 170 }, { tag: "cut", length: 40, inkEnd: 318 }];
        }
        function test_cutsATitleThatIsTooLongAndNeverShrinksIt(data) {
            const title = "H".repeat(data.length);
            open([{ header: "Fonts", rows: [{ title: title, font: "twin2.ttf", marked: true }] }]);
            verify(drawnTitle(title).drawn);
            const picture = grabImage(host.item);
            const left = row(title).x + Theme.inset;
            let last = 0;
            for (let x = 0; x < drawnTitle(title).width + 6; ++x)
                if (ink(picture, left + x, place(title)) > 0)
                    last = x;
            verify(last < drawnTitle(title).width, "up to " + last);
            verify(Math.abs(last - Math.min(data.inkEnd, drawnTitle(title).width)) < 14, "up to " + last);
            const height = ink(picture, letterX(title), place(title));
            verify(Math.abs(height - 17 * 0.7) <= 1, height + " points high");
            compare(spokenAs(title).name, title);
        }
        function test_beginsARightToLeftTitleAtTheRight() {
            open([{ header: "Fonts", rows: [{ title: "خط عربي", font: "arabic.ttf" }] }]);
            const left = letterX("خط عربي"), width = drawnTitle("خط عربي").width;
            verify(drawnTitle("خط عربي").drawn);
            compare(inkOf("خط عربي", left), 0);
            verify(inkOf("خط عربي", left + width - 9) > 0);
        }
        function test_opensAsManyFontsAsRowsAreShown() {
            const before = bench.fontsOpened;
            open(manyFonts);
            compare(bench.fontsOpened - before, shown().length);
            scroller().contentY = 400;
            tryVerify(() => shown().every(item => drawnTitle(item.title)?.drawn));
            compare(bench.fontsOpened - before, Math.max(...shown().map(item => item.place)) + 1);
        }
        function test_opensNoFontOfARowThatIsPassedOnTheWay() {
            const before = bench.fontsOpened;
            bench.askToScroll(150, 2);
            open(manyFonts);
            tryVerify(() => shown().every(item => drawnTitle(item.title)?.drawn));
            verify(shown().some(item => item.title === "Many0150"));
            compare(bench.fontsOpened - before, shown().length);
        }
    }
}
