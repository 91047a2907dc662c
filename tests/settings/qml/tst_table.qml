import QtQuick
import QtTest
import Lumora

// How a table is drawn, and what it tells of that, with the bench in place of the main thread.
PageStage {
    id: root

    SignalSpy {
        id: views

        signalName: "viewChanged"
    }

    TableCase {
        name: "Table"
        stage: root

        // -- where everything stands --

        function test_stacksHeadersRowsAndFootersWithoutGaps() {
            open(letters);
            compare(drawn(), "|ABC|XY");
            const heights = bench.viewports[bench.viewports.length - 1];
            compare(row("A").y, heights.headers[0]);
            compare(row("C").y, row("A").y + 80);
            compare(row("X").y, row("C").y + 40 + heights.footers[0] + heights.headers[1]);
            verify(heights.footers[0] > 15, "a footer of one space takes a line");
            compare(row("A").height, 40);
        }
        function test_roundsTheFirstAndTheLastRowOfASection() {
            open(letters);
            compare(rows().filter(item => item.first).map(item => item.title), ["A", "X"]);
            compare(rows().filter(item => item.last).map(item => item.title), ["C", "Y"]);
        }
        function test_insetsAndRoundsTheRowsOfAGroupedTableButNotThoseOfAPlainOne() {
            open(letters);
            compare([row("A").x, row("A").width], [Theme.inset, 390 - 2 * Theme.inset]);
            const corner = () => colorAt(row("A").x, row("A").y);
            verify(corner() !== Theme.cell.toString());
            bench.plain = true;
            show(letters);
            compare([row("A").x, row("A").width], [0, 390]);
            compare(corner(), Theme.cell.toString());
        }
        function test_drawsSignsToDeleteAndInsertRowsAndMakesRoomForThem() {
            open([{ header: "Edited", rows: [{ title: "A" }, { title: "B", indented: true }, { title: "C", editingStyle: 1 },
                                             { title: "D", editingStyle: 2 }] }]);
            const left = title => find(row(title), item => item instanceof Text).mapToItem(row(title), 0, 0).x;
            compare(["A", "B", "C", "D"].map(left), [16, 54, 54, 54]);
            const colors = title => [[19, 20], [27, 15], [27, 20]].map(([x, y]) => colorAt(row(title).x + x, row(title).y + y));
            const [ground, red, green] = [Theme.cell, Theme.warning, Theme.on].map(color => color.toString());
            compare(colors("B"), [ground, ground, ground]);
            compare(colors("C"), [red, red, "#ffffff"]);
            compare(colors("D"), [green, "#ffffff", "#ffffff"]);
        }
        function test_saysThatASectionIsEmptyAndTellsNobodyOfTheRoomForThat() {
            const placeholders = () => all(host.item, item => item instanceof DashedBox);
            const footers = [{ header: "Enabled", footer: " " }, { header: "Disabled", footer: "Drag them." }];
            open([footers[0], Object.assign({ rows: [{ title: "X" }] }, footers[1])]);
            compare(placeholders().length, 1);
            const box = placeholders()[0];
            const told = bench.viewports[bench.viewports.length - 1];
            compare(box.mapToItem(host.item, 0, 0).y, told.headers[0]);
            compare(box.height, 40);
            compare(find(box, item => item instanceof Text).text, "Nothing here. Drag a row here.");
            compare(row("X").y, told.headers[0] + 40 + told.footers[0] + told.headers[1]);
            compare(table().table.total, 1);
            compare(spokenAs("X").description.slice(0, 30), "Position 1 of 1 in Disabled. A");
            verify(!bench.spoken(host.item).some(control => control.name.startsWith("Nothing")));
            compare(told.top, -160 - 40, "what is beneath stands higher for the page");
            compare(told.bottom, 700 + 160);
            show(letters);
            compare(placeholders().length, 0);
            show(footers);
            compare(placeholders().map(box => find(box, item => item instanceof Text).text), ["Nothing here.", "Nothing here."]);
            bench.selectable = true;
            show([{ header: "Fonts" }]);
            compare(placeholders().length, 0, "where nothing is moved");
        }
        function test_putsAnIconLeftOfTheTitle() {
            open([{ header: "Enabled", rows: [{ title: "With", icon: "red" }, { title: "Without" }] }]);
            const y = row("With").y + 20;
            compare(colorAt(2 * Theme.inset + 14, y), "#ff0000");
            verify(colorAt(2 * Theme.inset + 14, y + 40) !== "#ff0000");
            verify(row("With").hasIcon && !row("Without").hasIcon);
        }
        function test_hasOneSizeOfTitlesAndCutsLongOnesButTellsAssistiveToolsTheWhole() {
            const whole = "A name that is much too long for one line of a phone ".repeat(3);
            open([{ header: "Enabled", rows: [{ title: "Short" }, { title: whole }, { title: "two\nlines" }] }]);
            const titles = ["Short", whole, "two\nlines"].map(name => find(row(name), item => item instanceof Text));
            compare(titles.map(title => title.fontInfo.pixelSize), [17, 17, 17]);
            compare(titles.map(title => title.lineCount), [1, 1, 1]);
            compare(titles[1].truncated, true);
            compare(spokenAs(whole).name, whole);
        }
        function test_showsARowWithoutATitleAndAMark() {
            open([{ header: "Enabled", rows: [{ identifier: "gone" }, { title: "Chosen", marked: true }] }]);
            compare(rows().length, 2);
            compare(rows()[0].title, "");
            compare(rows()[1].marked, true);
        }
        function test_makesItemsOnlyForRowsInViewHoweverManyThereAre() {
            open([{ header: "Enabled", rows: numbered(10000) }, { header: "Disabled", rows: numbered(3) }]);
            verify(rows().length < 40, rows().length + " items");
            for (const y of [10000, 200000, 400000 - 2000, 0]) {
                scroller().contentY = y;
                tryVerify(() => rows().some(item => item.y >= y && item.y < y + 60 && item.title.length > 0));
                verify(rows().length < 40, rows().length + " items at " + y);
            }
        }
        function test_scrollsExactlyAsFarAsThereIsSomething() {
            open([{ header: "Enabled", rows: numbered(10000) }, { header: "Disabled", rows: numbered(3) }]);
            enter();
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 2");
            const last = rows().find(item => item.activeFocus);
            const place = last.mapToItem(host.item, 0, 0).y;
            verify(place > 600 && place + 40 <= 700, "at " + place);
        }
        function test_startsAnotherTableAtItsTop() {
            open(many(100));
            enter();
            keyClick(Qt.Key_End);
            tryVerify(() => focusedRow() === "Row 99");
            show(many(100));
            verify(scroller().contentY > 0, "a newer snapshot of the same one changes nothing");
            compare(table().table.current, 99);
            bench.show({ sections: many(100), anew: true });
            compare(scroller().contentY, 0);
            tryVerify(() => focusedRow() === "Row 0");
            tryVerify(() => rows().length > 15 && rows().every(item => item.title.length > 0));
        }
        function test_alignsEverythingToWholePixels() {
            open([{ header: "Enabled", footer: "A footer.\nAnother line.", rows: numbered(100) }]);
            const heights = bench.viewports[bench.viewports.length - 1];
            for (const height of heights.headers.concat(heights.footers))
                compare(height, Math.round(height));
            scroller().contentY = 100.4;
            compare(scroller().contentItem.y, -100);
        }
        function test_drawsHeadersAsTheyAreWritten() {
            open(letters);
            const header = find(host.item, item => item.text === "Enabled");
            compare(header.font.capitalization, Font.MixedCase);
        }
        function test_redrawsAHostedViewOnlyWhenItHasChanged() {
            open(letters);
            views.target = root.shownPage;
            views.clear();
            show(letters);
            compare(views.count, 0);
            bench.show({ sections: letters, color: "red" });
            compare(views.count, 1);
            show(letters);
            compare(views.count, 1);
        }

        // -- what is reported --

        function test_tellsOfTheRowsInViewOnlyWhenTheyChange() {
            open(many(100));
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
        function test_reportsAtMostTwoViewportsWhenAPageOpens() {
            open(letters);
            verify(bench.viewports.length <= 2, bench.viewports.length + " reports");
        }
    }
}
