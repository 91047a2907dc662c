import QtQuick
import QtTest
import Lumora

// The search over a page, with an index of the bench.
Item {
    id: root

    property SearchModel search: null

    width: 390
    height: 700

    Loader {
        id: place

        anchors.fill: parent
        active: root.search !== null
        sourceComponent: SearchPanel { search: root.search }
    }
    SignalSpy {
        id: overs

        target: place.item
        signalName: "over"
    }

    DrawnCase {
        name: "Search"
        host: place

        readonly property var pages: [{ title: "Lumora" }, { title: "Apps", from: 0 }, { title: "Passcode View", from: 0 }]
        readonly property var rows: [
            { title: "Enable", page: 0, cell: RowModel.SwitchCell, key: "kEnabled", row: 1 },
            { title: "Blur Color", page: 2, cell: RowModel.LinkCell, row: 1 },
            { title: "Blur Opacity", page: 2, cell: RowModel.SliderCell, key: "kOpacity", row: 3, words: ["transparency"], showsNumber: true },
            { title: "Blur Icon View Background", page: 1, cell: RowModel.SwitchCell, key: "kBlur", row: 4 },
            { title: "Passcode", page: 1, cell: RowModel.SecureEditTextCell, key: "kCode", row: 5 },
            { title: "Custom <Blur> & Color", page: 2, cell: RowModel.SwitchCell, key: "kCustom", row: 6 },
        ]

        function init() {
            beginAsUsual();
            overs.clear();
        }
        function cleanup() { root.search = null }
        function open(entries = rows) {
            root.search = bench.search({ pages, entries });
            place.item.begin("");
            verify(waitForRendering(place.item));
        }
        function type(text) {
            for (const letter of text)
                keyClick(letter);
        }
        function results() { return all(place.item, item => item instanceof SearchResult && item.visible).sort((one, other) => one.y - other.y) }
        function plain(text) { return text.replace(/<[^>]*>/g, "").replace(/&lt;/g, "<").replace(/&gt;/g, ">").replace(/&amp;/g, "&") }
        function titles() { return results().map(result => plain(result.title)) }
        function current() { return results().filter(result => result.current).map(result => plain(result.title)) }
        function values() { return results().map(result => result.value) }
        function says(text) { return all(place.item, item => item.visible && item.text === text).length > 0 }

        function test_groupsWhatItFindsByPageUnderTheWayThere() {
            open();
            type("blur");
            compare(titles(), ["Blur Color", "Blur Opacity", "Custom <Blur> & Color", "Blur Icon View Background"]);
            compare(results().filter(result => result.first).map(result => plain(result.path)), ["Lumora › Passcode View", "Lumora › Apps"]);
            compare(results().map(result => result.last), [false, false, true, true]);
            verify(says("4 of 6"));
        }
        function test_marksTheLettersThatWereLookedFor() {
            open();
            type("blur");
            compare(results()[0].title, "<b>Blur</b> Color");
            compare(results()[2].title, "Custom &lt;<b>Blur</b>&gt; &amp; Color");
        }
        function test_choosesByKeysWhileTheFieldHasTheFocus() {
            open();
            type("blur");
            compare(current(), ["Blur Color"]);
            for (const [key, title] of [[Qt.Key_Down, "Blur Opacity"], [Qt.Key_End, "Blur Icon View Background"], [Qt.Key_Down, "Blur Icon View Background"],
                                        [Qt.Key_Up, "Custom <Blur> & Color"], [Qt.Key_Home, "Blur Color"], [Qt.Key_Up, "Blur Color"]]) {
                keyClick(key);
                compare(current(), [title]);
            }
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(bench.landings, [["Class2", 3]]);
        }
        function test_opensAResultThatIsTapped() {
            open();
            type("background");
            const result = results()[0];
            mouseClick(result, 100, result.height - 10);
            compare(bench.landings, [["Class1", 4]]);
        }
        function test_emptiesItselfAtEscapeAndThenLeaves() {
            open();
            type("blur");
            keyClick(Qt.Key_Escape);
            compare([root.search.query, root.search.count, overs.count], ["", 0, 0]);
            keyClick(Qt.Key_Escape);
            compare(overs.count, 1);
        }
        function test_showsTheFormerResultsToWhomComesBack() {
            open();
            type("blur");
            keyClick(Qt.Key_Down);
            place.item.begin("");
            compare(current(), ["Blur Opacity"]);
            type("e"); // in place of the former words
            compare(root.search.query, "e");
        }
        function test_showsValuesOnceTheyHaveCome() {
            open();
            type("blur");
            compare(values(), ["", "", "", ""]);
            bench.answer({ kOpacity: 0.5, kCustom: true, kCode: "1234" });
            compare(values(), ["", "0.50", "On", "Off"]);
            keyClick(Qt.Key_Escape);
            type("passcode");
            compare(plain(results().find(result => result.value.length > 0).title), "Passcode");
            verify(!values().join("").includes("1234"));
            compare(spoken(control => JSON.stringify(control).includes("1234")).length, 0);
        }
        function test_showsValuesAsTheirRowsDo() {
            const slider = { page: 0, cell: RowModel.SliderCell, showsNumber: true };
            open([
                { title: "Sleep After", page: 0, cell: RowModel.LinkListCell, key: "kAfter", options: ["Ten Seconds", "Never"], shortTitles: ["10 s"], values: [10, 0] },
                Object.assign({ title: "Sleep Fade", key: "kFade" }, slider),
                Object.assign({ title: "Sleep Height", key: "kHeight", minimum: 5, maximum: 200 }, slider),
                { title: "Sleep Mute", page: 0, cell: RowModel.SliderCell, key: "kMute" },
                { title: "Sleep Text", page: 0, cell: RowModel.EditTextCell, key: "kText" },
            ]);
            type("sleep");
            bench.answer({ kAfter: 10.0, kFade: 12, kHeight: 7.25, kMute: 0.5, kText: 3 });
            compare(values(), ["10 s", "12.00", "7.3", "", "3"]);
            bench.answer({ kAfter: 0 });
            compare(values(), ["Never", "0.00", "5.0", "", ""]);
            bench.answer({ kAfter: 11, kFade: "x" });
            compare(values().slice(0, 2), ["", "0.00"]);
        }
        function test_findsWhatIsChosenElsewhereOnlyWhileItIsChosen() {
            open([
                { title: "Mail", page: 1, identifier: "mail" },
                { title: "Mail", page: 2, identifier: "mail", chosenBy: ["kChosen", "kLeftOut"] },
            ]);
            const ways = () => results().filter(result => result.first).map(result => plain(result.path));
            type("mail");
            compare(ways(), ["Lumora › Apps"]);
            for (const settings of [{ kChosen: ["phone", "mail"] }, { kLeftOut: ["mail"] }]) {
                bench.answer(settings);
                tryVerify(() => ways().join() === "Lumora › Apps,Lumora › Passcode View");
                bench.answer({ kChosen: ["phone"] });
                tryVerify(() => ways().join() === "Lumora › Apps");
            }
        }
        function test_staysAtTheResultWhenOthersComeWithTheValues() {
            open([
                { title: "Mail", page: 1, identifier: "mail", chosenBy: ["kChosen"] },
                { title: "Mail Order", page: 2 },
                { title: "Mail Size", page: 2 },
            ]);
            type("mail");
            keyClick(Qt.Key_Down);
            compare(current(), ["Mail Size"]);
            bench.answer({ kChosen: ["mail"] });
            tryVerify(() => titles().join() === "Mail,Mail Order,Mail Size");
            compare(current(), ["Mail Size"]);
        }
        function test_showsTheResultsAsTheyWereLeft() {
            open(Array.from({ length: 250 }, (_, i) => ({ title: "Row " + i, page: 0, row: i })));
            type("row");
            const list = find(place.item, item => item instanceof ListView);
            for (let i = 0; i < 5; ++i)
                mouseWheel(list, 100, 200, 0, -120);
            tryVerify(() => list.contentY > 200 && !list.moving);
            const scrolled = list.contentY;
            mouseClick(list, 100, 300);
            const chosen = current();
            verify(chosen[0] !== "Row 0");
            place.visible = false;
            place.visible = true;
            place.item.resume();
            compare([current(), list.contentY, root.search.query], [chosen, scrolled, "row"]);
            type("9");
            compare(root.search.query, "row9");
        }
        function test_saysWhyARowIsFoundByAnotherWord() {
            open();
            type("transp");
            compare(titles(), ["Blur Opacity"]);
            verify(says("also: transparency"));
        }
        function test_headsWhatIsFoundInSpiteOfAMistake() {
            open();
            verify(!says("Similar"));
            type("opactiy");
            compare(titles(), ["Blur Opacity"]);
            verify(says("Similar"));
        }
        function test_saysThatItIsStillLookingOrHasFoundNothing() {
            open([]);
            verify(says("Looking through the pages…"));
            type("blur");
            bench.index({ pages, entries: rows });
            tryVerify(() => titles().length === 4);
            keyClick(Qt.Key_Escape);
            verify(says("Find any setting"));
            type("zzz");
            verify(says("Nothing like “zzz” here"));
        }
        function test_tellsAssistiveToolsHowManyThereAreAndTheCurrentOne() {
            open();
            type("blur");
            keyClick(Qt.Key_Down);
            verify(spokenAs("4 results"));
            compare(spokenFocus(), ["Search"]);
            compare(spokenAs("Search").description, "Blur Opacity, Lumora › Passcode View, 2 of 4");
            verify(bench.act(place.item, "Blur Icon View Background, Lumora › Apps", "Press"));
            compare(bench.landings, [["Class1", 4]]);
        }
        function test_drawsOnlyTheResultsInView() {
            open(Array.from({ length: 250 }, (_, i) => ({ title: "Row " + i, page: 0, row: i })));
            type("row");
            compare(root.search.count, 250);
            verify(results().length < 30);
            keyClick(Qt.Key_End);
            compare(current(), ["Row 249"]);
        }
    }
}
