import QtQuick
import QtTest
import Lumora

// Rows as they are drawn, with the bench in place of the main thread.
Item {
    id: root

    width: 390
    height: 800

    property var shownPage: null

    Loader {
        id: host

        anchors.fill: parent
        active: root.shownPage !== null
        sourceComponent: RowsPage { page: root.shownPage }
    }

    TestCase {
        id: test

        name: "Rows"
        when: windowShown

        function cleanup() {
            root.shownPage = null;
            Theme.textSize = 100;
        }

        function open(rows) {
            root.shownPage = null;
            root.shownPage = bench.page(rows);
            verify(waitForRendering(host.item));
        }
        function find(item, matches) {
            for (let i = 0; i < item.children.length; ++i) {
                const found = matches(item.children[i]) ? item.children[i] : find(item.children[i], matches);
                if (found)
                    return found;
            }
            return null;
        }
        function texts() {
            const all = [];
            find(host.item, item => {
                if (/^(QQuickText|WordText|RowTitle|Caption)/.test(item.toString()) && item.visible && item.text !== undefined)
                    all.push(item.displayText ?? item.text);
                return false;
            });
            return all;
        }
        function slider() { return find(host.item, item => item.handOn !== undefined && item.from !== undefined) }
        function field() { return find(host.item, item => item.echoMode !== undefined && item.edited !== undefined) }
        function toggle() { return find(host.item, item => item.flip !== undefined) }
        function spokenAs(name) { return bench.spoken(host.item).filter(control => control.name === name) }

        // -- what nil and values of wrong kinds look like --

        function test_drawsNilAsOffMinimumEmptyAndNothingChosen() {
            open([{ cell: RowModel.SwitchCell, name: "Switch" }, { cell: RowModel.SliderCell, min: 0.5, max: 2 }, { cell: RowModel.EditTextCell, placeholder: "Text" },
                  { cell: RowModel.LinkListCell, name: "List" }]);
            compare(toggle().checked, false);
            compare(slider().value, 0.5);
            compare(field().text, "");
            verify(texts().includes("Text"), "the placeholder shows");
        }
        function test_drawsValuesOfWrongKindsAsNil() {
            const wrong = [[], "yes"];
            for (const value of wrong) {
                open([{ cell: RowModel.SwitchCell, name: "Switch", value: value }, { cell: RowModel.SliderCell, min: 0.5, max: 2, value: value }]);
                compare(toggle().checked, false);
                compare(slider().value, 0.5);
            }
            open([{ cell: RowModel.EditTextCell, placeholder: "Text", value: [] }]);
            compare(field().text, "");
        }
        function test_keepsASlidersValueWithinItsBounds() {
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 7 }]);
            compare(slider().value, 1);
            compare(bench.changes.length, 0);
        }
        function test_drawsARowOfUnknownKindAsText() {
            open([{ cell: 99, name: "Strange" }]);
            verify(texts().includes("Strange"));
        }
        function test_showsTheShortTitleOfTheChosenOption() {
            open([{ cell: RowModel.LinkListCell, name: "Sleep After", valueTitle: "20 Seconds" }]);
            verify(texts().includes("20 Seconds"));
        }
        function test_showsASlidersNumberOnlyWhenItIsAskedFor() {
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0.5, showValue: true }]);
            verify(texts().includes("0.50"));
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0.5, showValue: false }]);
            verify(!texts().includes("0.50"));
        }

        function test_shrinksALongTitleAndThenGivesItTwoLines() {
            const title = name => find(host.item, item => item.takesLines !== undefined && item.text === name);
            const shrunk = "Enable Blur For The Whole Icon View";
            const longer = "Always Return To The Lock Screen After Opening An App";
            open([{ cell: RowModel.SwitchCell, name: "Short" }, { cell: RowModel.SwitchCell, name: shrunk }, { cell: RowModel.SwitchCell, name: longer }, { cell: RowModel.LinkCell, name: longer }]);
            compare(title("Short").fontInfo.pixelSize, Theme.bodySize);
            verify(title(shrunk).fontInfo.pixelSize < Theme.bodySize);
            compare(title(shrunk).lineCount, 1);
            compare(title(longer).lineCount, 2);
            for (const name of ["Short", shrunk, longer])
                verify(!title(name).truncated, name);
        }

        // -- how large texts are --

        function test_growsWithItsTexts_data() {
            const title = "Enable App Views";
            return [{ tag: "switch", row: { cell: RowModel.SwitchCell, name: title } }, { tag: "link", row: { cell: RowModel.LinkCell, name: title } },
                    { tag: "chosen", row: { cell: RowModel.LinkListCell, name: title, valueTitle: title } },
                    { tag: "option", row: { cell: RowModel.ListItemCell, name: title } }, { tag: "button", row: { cell: RowModel.ButtonCell, name: title } },
                    { tag: "text", row: { cell: RowModel.StaticTextCell, name: title } }, { tag: "field", row: { cell: RowModel.EditTextCell, placeholder: title } },
                    { tag: "slider", row: { cell: RowModel.SliderCell, min: 0, max: 1, showValue: true } }];
        }
        function test_growsWithItsTexts(data) {
            const rowHeight = () => find(host.item, item => item.row !== undefined && item.first !== undefined).height;
            open([data.row]);
            const usual = rowHeight();
            verify(usual >= 44);
            Theme.textSize = 300;
            verify(rowHeight() > usual, rowHeight());
            find(host.item, item => {
                if (item.visible && item.truncated !== undefined)
                    verify(!item.truncated && item.contentHeight <= item.height + 1, item.text);
                return false;
            });
            Theme.textSize = 50;
            verify(rowHeight() >= 44, "as high as a finger needs");
            Theme.textSize = 100;
            compare(rowHeight(), usual);
        }
        function test_putsALongValueBeneathItsTitle() {
            const title = "Sleep After", value = "as many minutes as it takes, and then some more of them";
            const shown = text => find(host.item, item => item.truncated !== undefined && item.text === text);
            open([{ cell: RowModel.LinkListCell, name: title, valueTitle: "2 Minutes" }]);
            compare(shown("2 Minutes").y, shown(title).y);
            open([{ cell: RowModel.LinkListCell, name: title, valueTitle: value }]);
            verify(shown(value).y >= shown(title).y + shown(title).height);
            verify(shown(value).lineCount > 1);
            verify(!shown(value).truncated);
        }
        function test_showsALongTextOfAFieldFromItsBeginning() {
            open([{ cell: RowModel.EditTextCell, value: "words ".repeat(50) }]);
            compare(field().positionToRectangle(0).x >= 0, true);
        }

        // -- switches --

        function test_handsOnASwitchOnceWhenItIsTapped() {
            open([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            mouseClick(toggle());
            compare(toggle().checked, true);
            compare(bench.changes, [[0, true]]);
        }
        function test_handsOnASwitchBySpaceAndByEnter() {
            open([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            toggle().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            compare(bench.changes, [[0, true], [0, false]]);
        }
        function test_handsOnASwitchOnceByAccessibilityAction() {
            open([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            verify(bench.act(host.item, "Switch", "Toggle"));
            compare(toggle().checked, true);
            compare(bench.changes, [[0, true]]);
        }
        function test_settlesASwitchOnWhatThePageHasStored() {
            open([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            mouseClick(toggle());
            bench.show([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            compare(toggle().checked, true, "the user's hand shows while the change is under way");
            bench.takeAll();
            compare(toggle().checked, false, "the page has kept its value");
        }
        function test_doesNotFlickerBackWhileASecondChangeIsUnderWay() {
            open([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            mouseClick(toggle());
            mouseClick(toggle());
            bench.show([{ cell: RowModel.SwitchCell, name: "Switch", value: true }]);
            compare(toggle().checked, false);
            bench.show([{ cell: RowModel.SwitchCell, name: "Switch", value: false }]);
            bench.takeAll();
            compare(toggle().checked, false);
        }

        // -- icons and texts --

        function test_drawsAnIconLeftOfARowOfAnyKind_data() {
            return [
                { tag: "link", cell: RowModel.LinkCell }, { tag: "option list", cell: RowModel.LinkListCell }, { tag: "slider", cell: RowModel.SliderCell },
                { tag: "switch", cell: RowModel.SwitchCell }, { tag: "static text", cell: RowModel.StaticTextCell }, { tag: "field", cell: RowModel.EditTextCell },
                { tag: "secure field", cell: RowModel.SecureEditTextCell }, { tag: "button", cell: RowModel.ButtonCell },
            ];
        }
        function test_drawsAnIconLeftOfARowOfAnyKind(data) {
            open([{ cell: data.cell, name: "Row", placeholder: "Row", min: 0, max: 1, icon: "red" }]);
            const picture = grabImage(host.item);
            const x = 2 * Theme.inset + Theme.iconSize / 2;
            compare(picture.pixel(x, 20 + Theme.rowHeight / 2), "#ff0000");
            compare(picture.pixel(2 * Theme.inset + Theme.iconSize + 4, 20 + 10), Theme.cell.toString(), "room after it");
        }
        function test_drawsMarkupInTextsAsItIsWritten() {
            open([{ cell: RowModel.GroupCell, name: "<b>Group</b>", footerText: "<i>Foot</i>" }, { cell: RowModel.LinkCell, name: "<b>Link</b>", valueTitle: "<u>Value</u>" },
                  { cell: RowModel.SwitchCell, name: "<b>Switch</b>" }, { cell: RowModel.StaticTextCell, name: "<b>Text</b>" }, { cell: RowModel.ButtonCell, name: "<b>Button</b>" }]);
            const formats = [];
            find(host.item, item => {
                if (item.textFormat !== undefined && item.text?.startsWith("<"))
                    formats.push(item.textFormat);
                return false;
            });
            compare(formats.length, 7);
            verify(formats.every(format => format === Text.PlainText));
        }

        // -- sliders --

        function test_handsOnASliderOnlyWhenItIsReleased() {
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0 }]);
            const s = slider();
            mousePress(s, 14, s.height / 2);
            for (let x = 20; x <= s.width / 2; x += 10)
                mouseMove(s, x, s.height / 2);
            verify(s.value > 0.2, "the knob follows the hand");
            compare(bench.changes.length, 0);
            mouseRelease(s, s.width / 2, s.height / 2);
            compare(bench.changes.length, 1);
            fuzzyCompare(bench.changes[0][1], s.value, 1e-5);
        }
        function test_handsOnTheBoundsOfASliderThatIsDraggedBeyondItsEnds_data() {
            return [{ tag: "opacity", min: 0, max: 1 }, { tag: "icon size", min: 50, max: 90 },
                    { tag: "button diameter", min: -15, max: 15 }, { tag: "button spacing", min: 0, max: 3 },
                    { tag: "time font size", min: 10, max: 150 }, { tag: "date subtitle font size", min: 5, max: 50 },
                    { tag: "date view offset", min: -10, max: 50 }];
        }
        function test_handsOnTheBoundsOfASliderThatIsDraggedBeyondItsEnds(data) {
            open([{ cell: RowModel.SliderCell, min: data.min, max: data.max, value: (data.min + data.max) / 2, showValue: true }]);
            const s = slider();
            function drag(from, to) {
                mousePress(s, from, s.height / 2);
                for (let step = 1; step <= 4; ++step)
                    mouseMove(s, from + (to - from) * step / 4, s.height / 2);
                mouseRelease(s, to, s.height / 2);
            }
            drag(s.width / 2, -8);
            compare(bench.changes, [[0, data.min]]);
            drag(14, s.width + 8);
            compare(bench.changes, [[0, data.min], [0, data.max]]);
        }
        function test_handsOnEachKeyStepOfASliderWithoutRoundingNoise() {
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0.1 }]);
            slider().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Left);
            compare(bench.changes, [[0, 0.15], [0, 0.2], [0, 0.15]]);
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Right);
            compare(bench.changes.length, 4, "nothing beyond the end");
            compare(bench.changes[3][1], 1);
        }
        function test_handsOnASliderOnceByAccessibilityAction() {
            open([{ cell: RowModel.StaticTextCell, name: "Opacity (1.0)" }, { cell: RowModel.SliderCell, min: 0, max: 1, value: 0.5 }]);
            verify(bench.act(host.item, "Opacity (1.0)", "Increase"));
            compare(bench.changes, [[1, 0.55]]);
        }
        function test_handsNothingOnWhenASliderIsOnlyShown_data() {
            return [
                { tag: "bounds above nought", min: 50, max: 90, value: 70, shown: 70 },
                { tag: "bounds around nought", min: -15, max: 15, value: -3, shown: -3 },
                { tag: "bounds below nought", min: -20, max: -10, value: -12, shown: -12 },
                { tag: "a value beyond the bounds", min: 50, max: 90, value: 7, shown: 50 },
                { tag: "nil", min: 50, max: 90, value: undefined, shown: 50 },
            ];
        }
        function test_handsNothingOnWhenASliderIsOnlyShown(data) {
            open([{ cell: RowModel.SliderCell, identifier: "s", min: data.min, max: data.max, value: data.value }]);
            compare(slider().value, data.shown);
            compare(bench.changes.length, 0);
        }
        function test_settlesASliderWithoutHandingItOn() {
            open([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0.5 }]);
            bench.show([{ cell: RowModel.SliderCell, min: 0, max: 1, value: 0.25 }]);
            compare(slider().value, 0.25);
            compare(bench.changes.length, 0);
        }

        // -- fields --

        function test_handsOnAFieldWithEnterOnlyIfSomethingWasTyped() {
            open([{ cell: RowModel.EditTextCell, placeholder: "Text", value: "a" }]);
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
            open([{ cell: RowModel.EditTextCell, placeholder: "First" }, { cell: RowModel.EditTextCell, placeholder: "Second" }]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick("x");
            keyClick(Qt.Key_Tab);
            compare(bench.changes, [[0, "x"]]);
            keyClick(Qt.Key_Backtab);
            compare(bench.changes.length, 1);
        }
        function test_handsOnAClearedFieldAsEmptyText() {
            open([{ cell: RowModel.EditTextCell, placeholder: "Text", value: "a" }]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Backspace);
            keyClick(Qt.Key_Enter);
            compare(bench.changes, [[0, ""]]);
        }
        function test_doesNotOverwriteWhatIsBeingTyped() {
            open([{ cell: RowModel.EditTextCell, placeholder: "Text", value: "a" }]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("b");
            bench.show([{ cell: RowModel.EditTextCell, placeholder: "Text", value: "other" }]);
            compare(field().text, "ab");
        }
        function test_speaksOfASecureFieldInDotsOnly() {
            open([{ cell: RowModel.GroupCell, footerText: "Footer" }, { cell: RowModel.SecureEditTextCell, placeholder: "Passcode", value: "hidden" }]);
            field().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            keyClick("q");
            const spoken = bench.spoken(host.item);
            const secret = spoken.filter(control => control.name === "Passcode");
            compare(secret.length, 1);
            compare(secret[0].description, "Secure. Footer");
            compare(secret[0].text, "•••••••");
            compare(secret[0].focused, true);
            for (const control of spoken)
                for (const text of [control.name, control.description, control.value, control.text, String(control.number ?? "")])
                    verify(!/hidden|hiddenq|q$/.test(text), "told: " + text);
            verify(!texts().some(text => /hidden/.test(text)));
        }
        function test_speaksThePlainTextOfAnOrdinaryField() {
            open([{ cell: RowModel.EditTextCell, placeholder: "Subtitle", value: "plain" }]);
            const spoken = spokenAs("Subtitle");
            compare(spoken.length, 1);
            verify(spoken[0].value === "plain" || spoken[0].text === "plain");
        }

        // -- taps --

        function test_tapsLinksButtonsAndOptionsByMouseKeyboardAndAssistiveTool_data() {
            return [{ tag: "link", cell: RowModel.LinkCell }, { tag: "option list", cell: RowModel.LinkListCell }, { tag: "option", cell: RowModel.ListItemCell },
                    { tag: "button", cell: RowModel.ButtonCell }];
        }
        function test_tapsLinksButtonsAndOptionsByMouseKeyboardAndAssistiveTool(data) {
            open([{ cell: RowModel.GroupCell, name: "Group" }, { cell: data.cell, name: "Row" }]);
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
            open([{ cell: RowModel.SwitchCell, name: "A", value: false }, { cell: RowModel.EditTextCell, placeholder: "B", value: "x" }]);
            const before = toggle();
            before.forceActiveFocus(Qt.TabFocusReason);
            bench.show([{ cell: RowModel.SwitchCell, name: "A", value: true }, { cell: RowModel.EditTextCell, placeholder: "B", value: "y" }]);
            compare(toggle(), before, "the same control draws the row");
            verify(before.activeFocus);
            verify(before.checked);
            compare(field().text, "y");
        }
        function test_drawsOtherRowsWhenASnapshotHasOthers() {
            open([{ cell: RowModel.SwitchCell, name: "A" }]);
            bench.show([{ cell: RowModel.LinkCell, name: "B" }, { cell: RowModel.LinkCell, name: "C" }]);
            tryVerify(() => texts().includes("B") && texts().includes("C"));
            verify(!texts().includes("A"));
        }
        function test_scrollsToWhatHasTheFocus() {
            const rows = [];
            for (let i = 0; i < 40; ++i)
                rows.push({ cell: RowModel.LinkCell, name: "Row " + i });
            open(rows);
            compare(host.item.contentY, 0);
            const last = find(host.item, item => item.text === "Row 39" && item.clicked !== undefined);
            last.forceActiveFocus(Qt.TabFocusReason);
            verify(host.item.contentY > 0);
            const place = last.mapToItem(host.item, 0, 0);
            verify(place.y >= 0 && place.y + last.height <= host.item.height);
        }

        // -- names, roles, descriptions --

        function test_givesEveryControlANameARoleAndADescription() {
            open([{ cell: RowModel.GroupCell, name: "Group", footerText: "Footer" }, { cell: RowModel.SwitchCell, name: "Switch", value: true },
                  { cell: RowModel.LinkCell, name: "Link" }, { cell: RowModel.LinkListCell, name: "List", valueTitle: "Ten" }, { cell: RowModel.StaticTextCell, name: "Above" },
                  { cell: RowModel.SliderCell, min: 0, max: 1 }, { cell: RowModel.EditTextCell, placeholder: "Field" }, { cell: RowModel.ButtonCell, name: "Button" }]);
            for (const name of ["Switch", "Link", "List", "Above", "Field", "Button"])
                verify(spokenAs(name).length > 0, name);
            compare(spokenAs("Switch")[0].checked, true);
            compare(spokenAs("Switch")[0].description, "Footer");
            compare(spokenAs("List")[0].description, "Ten. Footer");
            compare(spokenAs("Above").length, 2, "the text, and the slider beneath it");
            compare(spokenAs("Field")[0].description, "Footer");
        }
        function test_tellsWhichOptionIsChosen() {
            open([{ cell: RowModel.ListItemCell, name: "One", marked: false }, { cell: RowModel.ListItemCell, name: "Two", marked: true }]);
            compare(spokenAs("One")[0].checked, false);
            compare(spokenAs("Two")[0].checked, true);
            compare(spokenAs("Two")[0].role, 0x2d, "a radio button");
        }
    }
}
