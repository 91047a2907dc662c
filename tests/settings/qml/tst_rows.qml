import QtQuick
import QtTest
import Lumora

// Rows as they are drawn, with the bench in place of the main thread.
PageStage {
    id: root

    height: 800

    RowsCase {
        name: "Rows"
        stage: root

        function everyKind(title) {
            return [{ tag: "switch", row: aSwitch(title) }, { tag: "link", row: aLink(title) },
                    { tag: "option list", row: aList(title, title) }, { tag: "option", row: anOption(title) },
                    { tag: "button", row: aButton(title) }, { tag: "text", row: aText(title) },
                    { tag: "field", row: aField(title) }, { tag: "secure field", row: aSecureField(title) },
                    { tag: "slider", row: aSlider(0, 1, undefined, true) }];
        }

        // -- what nil and values of wrong kinds look like --

        function test_drawsNilAsOffMinimumEmptyAndNothingChosen() {
            open([aSwitch("Switch"), aSlider(0.5, 2), aField("Text"), aList("List")]);
            compare(toggle().checked, false);
            compare(slider().value, 0.5);
            compare(field().text, "");
            verify(texts().includes("Text"), "the placeholder shows");
        }
        function test_drawsValuesOfWrongKindsAsNil() {
            for (const value of [[], "yes"]) {
                open([aSwitch("Switch", value), aSlider(0.5, 2, value)]);
                compare(toggle().checked, false);
                compare(slider().value, 0.5);
            }
            open([aField("Text", [])]);
            compare(field().text, "");
        }
        function test_drawsARowOfUnknownKindAsText() {
            open([{ cell: 99, name: "Strange" }]);
            verify(texts().includes("Strange"));
        }
        function test_showsTheShortTitleOfTheChosenOption() {
            open([aList("Sleep After", "20 Seconds")]);
            verify(texts().includes("20 Seconds"));
        }
        function test_showsASlidersNumberOnlyWhenItIsAskedFor() {
            open([aSlider(0, 1, 0.5, true)]);
            verify(texts().includes("0.50"));
            open([aSlider(0, 1, 0.5, false)]);
            verify(!texts().includes("0.50"));
        }

        function test_wrapsTitlesAllInOneSize_data() { return [{ tag: "100" }, { tag: "200" }, { tag: "300" }] }
        function test_wrapsTitlesAllInOneSize(data) {
            const title = "Always Return To The Lock Screen After Opening An App With Notifications";
            open([aSwitch("Short"), aSwitch(title), aLink(title), aButton(title), aList(title, "2 Minutes"), aField(title), aText(title)]);
            Theme.textSize = Number(data.tag);
            const titles = shownTexts().filter(item => item.text === title);
            compare(titles.length, 6);
            for (const item of titles) {
                verify(item.lineCount >= 2, item.lineCount);
                verify(!item.truncated);
                compare(item.fontInfo.pixelSize, Theme.bodySize);
            }
        }

        // -- how large texts are --

        function test_growsWithItsTexts_data() { return everyKind("Enable App Views") }
        function test_growsWithItsTexts(data) {
            const rowHeight = () => find(host.item, item => item.row !== undefined && item.first !== undefined).height;
            open([data.row]);
            const usual = rowHeight();
            verify(usual >= 44);
            Theme.textSize = 300;
            verify(rowHeight() > usual, rowHeight());
            for (const item of shownTexts())
                verify(!item.truncated && item.contentHeight <= item.height + 1, item.text);
            Theme.textSize = 50;
            verify(rowHeight() >= 44, "as high as a finger needs");
            Theme.textSize = 100;
            compare(rowHeight(), usual);
        }
        function test_putsALongValueBeneathItsTitle() {
            const title = "Sleep After", value = "as many minutes as it takes, and then some more of them";
            const shown = text => find(host.item, item => item.truncated !== undefined && item.text === text);
            open([aList(title, "2 Minutes")]);
            compare(shown("2 Minutes").y, shown(title).y);
            open([aList(title, value)]);
            verify(shown(value).y >= shown(title).y + shown(title).height);
            verify(shown(value).lineCount > 1);
            verify(!shown(value).truncated);
        }
        function test_showsALongTextOfAFieldFromItsBeginning() {
            open([aField(undefined, "words ".repeat(50))]);
            verify(field().positionToRectangle(0).x >= 0);
        }

        // -- switches --

        function test_handsOnASwitchOnceEachTimeItIsTurned_data() {
            return [{ tag: "tap", turn: () => mouseClick(toggle()) }, { tag: "Space", turn: () => keyClick(Qt.Key_Space) },
                    { tag: "Return", turn: () => keyClick(Qt.Key_Return) },
                    { tag: "assistive tool", turn: () => verify(bench.act(host.item, "Switch", "Toggle")) }];
        }
        function test_handsOnASwitchOnceEachTimeItIsTurned(data) {
            open([aSwitch("Switch", false)]);
            toggle().forceActiveFocus(Qt.TabFocusReason);
            data.turn();
            compare(toggle().checked, true);
            data.turn();
            compare(bench.changes, [[0, true], [0, false]]);
        }
        function test_settlesASwitchOnWhatThePageHasStored() {
            open([aSwitch("Switch", false)]);
            mouseClick(toggle());
            show([aSwitch("Switch", false)]);
            compare(toggle().checked, true, "the user's hand shows while the change is under way");
            bench.takeAll();
            compare(toggle().checked, false, "the page has kept its value");
        }
        function test_doesNotFlickerBackWhileASecondChangeIsUnderWay() {
            open([aSwitch("Switch", false)]);
            mouseClick(toggle());
            mouseClick(toggle());
            show([aSwitch("Switch", true)]);
            compare(toggle().checked, false);
            show([aSwitch("Switch", false)]);
            bench.takeAll();
            compare(toggle().checked, false);
        }

        // -- icons and texts --

        function test_drawsAnIconLeftOfARowOfAnyKind_data() { return everyKind("Row") }
        function test_drawsAnIconLeftOfARowOfAnyKind(data) {
            open([Object.assign({ icon: "red" }, data.row)]);
            compare(colorAt(2 * Theme.inset + Theme.iconSize / 2, 20 + Theme.rowHeight / 2), "#ff0000");
            compare(colorAt(2 * Theme.inset + Theme.iconSize + 4, 20 + 10), Theme.cell.toString(), "room after it");
        }
        function test_drawsMarkupInTextsAsItIsWritten() {
            open([aGroup("<b>Group</b>", "<i>Foot</i>"), { cell: RowModel.LinkCell, name: "<b>Link</b>", valueTitle: "<u>Value</u>" },
                  aSwitch("<b>Switch</b>"), aText("<b>Text</b>"), aButton("<b>Button</b>")]);
            const formats = all(host.item, item => item.textFormat !== undefined && item.text?.startsWith("<")).map(item => item.textFormat);
            compare(formats.length, 7);
            verify(formats.every(format => format === Text.PlainText));
        }

        // -- taps --

        function test_tapsLinksButtonsAndOptionsByMouseKeyboardAndAssistiveTool_data() {
            return [{ tag: "link", cell: RowModel.LinkCell }, { tag: "option list", cell: RowModel.LinkListCell },
                    { tag: "option", cell: RowModel.ListItemCell }, { tag: "button", cell: RowModel.ButtonCell }];
        }
        function test_tapsLinksButtonsAndOptionsByMouseKeyboardAndAssistiveTool(data) {
            open([aGroup("Group"), { cell: data.cell, name: "Row" }]);
            const row = find(host.item, item => item.clicked !== undefined);
            mouseClick(row);
            compare(bench.taps, [1]);
            row.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            compare(bench.taps, [1, 1, 1]);
            verify(bench.act(host.item, "Row", "Press"));
            compare(bench.taps, [1, 1, 1, 1]);
        }

        // -- focus --

        function test_keepsTheFocusWhenASnapshotChangesValuesOnly() {
            open([aSwitch("A", false), aField("B", "x")]);
            const before = toggle();
            before.forceActiveFocus(Qt.TabFocusReason);
            show([aSwitch("A", true), aField("B", "y")]);
            compare(toggle(), before, "the same control draws the row");
            verify(before.activeFocus);
            verify(before.checked);
            compare(field().text, "y");
        }
        function test_drawsOtherRowsWhenASnapshotHasOthers() {
            open([aSwitch("A")]);
            show([aLink("B"), aLink("C")]);
            tryVerify(() => texts().includes("B") && texts().includes("C"));
            verify(!texts().includes("A"));
        }
        function test_scrollsToWhatHasTheFocus() {
            open(Array.from({ length: 40 }, (_, i) => aLink("Row " + i)));
            const last = find(host.item, item => item.text === "Row 39" && item.clicked !== undefined);
            verify(last.mapToItem(host.item, 0, 0).y > host.item.height);
            last.forceActiveFocus(Qt.TabFocusReason);
            const place = last.mapToItem(host.item, 0, 0);
            verify(place.y >= 0 && place.y + last.height <= host.item.height);
        }

        // -- names, roles, descriptions --

        function test_givesEveryControlANameARoleAndADescription() {
            open([aGroup("Group", "Footer"), aSwitch("Switch", true), aLink("Link"),
                  aList("List", "Ten"), aText("Above"), aSlider(0, 1), aField("Field"), aButton("Button")]);
            for (const name of ["Switch", "Link", "List", "Above", "Field", "Button"])
                verify(spokenAs(name), name);
            compare(spokenAs("Switch").checked, true);
            compare(spokenAs("Switch").description, "Footer");
            compare(spokenAs("List").description, "Ten. Footer");
            compare(allSpokenAs("Above").length, 2, "the text, and the slider beneath it");
            compare(spokenAs("Field").description, "Footer");
        }
        function test_tellsWhichOptionIsChosen() {
            open([anOption("One", false), anOption("Two", true)]);
            compare(spokenAs("One").checked, false);
            compare(spokenAs("Two").checked, true);
            compare(spokenAs("Two").role, Accessible.RadioButton);
        }
    }
}
