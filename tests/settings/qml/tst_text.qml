import QtQuick
import QtTest
import Lumora

// A page that hosts a long text: what is seen of it, and how keys, hands and assistive tools reach it.
PageStage {
    id: root

    PageCase {
        name: "Text"
        stage: root

        function open(text) { openPage(textView(text)) }
        function scroller() { return find(host.item, item => item.scrollTo !== undefined) }
        function pieces() { return all(host.item, item => item.selectByMouse !== undefined) }
        function shownText() { return pieces()[0] }
        function textView(text, id = 1, selectable = false) {
            return { color: "#ffffff", text: { id: id, frame: Qt.rect(10, 20, 370, 600), text: text, selectable: selectable } };
        }
        readonly property string manyLines: Array.from({ length: 300 }, (_, i) => "Line " + i).join("\n")

        function test_showsATextInItsFrameFromTheTop() {
            open(manyLines);
            compare([scroller().width, scroller().height], [370, 600]);
            compare(scroller().mapToItem(host.item, 0, 0), Qt.point(10, 20));
            compare(scroller().contentY, 0);
            compare(shownText().font.pixelSize, 15);
            compare(shownText().font.family, Application.font.family);
            verify(shownText().readOnly);
        }
        function test_showsTheEndOfATextInAWindowLowerThanTheView() {
            open(manyLines);
            host.anchors.fill = null;
            host.height = 300;
            compare(scroller().height, 280);
            host.item.forceActiveFocus();
            keyClick(Qt.Key_End);
            compare(scroller().contentY, scroller().contentHeight - 280);
            host.height = 10;
            compare(scroller().height, 0);
            host.anchors.fill = root;
            compare(scroller().height, 600);
        }
        function test_keepsTheLineAtTheTopWhenLinesBreakElsewhere() {
            const line = i => `Line ${i} has so many words that it takes two lines of the screen, unless that is wide.`;
            const text = Array.from({ length: 300 }, (_, i) => line(i)).join("\n");
            const topLine = () => {
                const piece = scroller().itemAt(0, scroller().contentY + 1);
                const place = piece.positionAt(piece.leftPadding, scroller().contentY + 1 - piece.y);
                return Number(piece.text.slice(piece.text.lastIndexOf("Line", place)).match(/Line (\d+)/)[1]);
            };
            open(text);
            host.item.forceActiveFocus();
            for (let i = 0; i < 9; ++i)
                keyClick(Qt.Key_PageDown);
            const before = topLine();
            verify(before > 100, before);
            for (const width of [800, 250, 370]) {
                const view = textView(text);
                view.text.frame = Qt.rect(10, 20, width, 600);
                bench.show(view);
                tryCompare(scroller(), "brokenAt", width);
                verify(Math.abs(topLine() - before) <= 3, `${topLine()} instead of ${before} at ${width}`);
            }
        }
        function test_laysOutOnlyTheVisiblePartOfALongTextAndTellsAllOfIt() {
            const whole = Array.from({ length: 20000 }, (_, i) => "Line " + i).join("\n");
            open(whole);
            host.item.forceActiveFocus();
            const at = (piece, y) => piece.mapToItem(scroller(), 0, y).y;
            verify(pieces().some(piece => piece.text.startsWith("Line 0\nLine 1\n") && at(piece, 0) === 0));
            verify(pieces().length < 10);
            const told = spoken(control => control.name.startsWith("Line"));
            compare(told.map(control => control.role), [Accessible.Paragraph]);
            compare(told[0].name, whole);
            keyClick(Qt.Key_End);
            tryVerify(() => pieces().some(piece => piece.text.endsWith("\nLine 19999") && at(piece, piece.height) === 600));
            verify(pieces().length < 10);
            for (let i = 0; i < 30; ++i)
                keyClick(Qt.Key_PageUp);
            // Nothing is left out between two pieces, and nothing shown twice.
            const seen = pieces().filter(piece => at(piece, piece.height) > 0 && at(piece, 0) < 600).sort((one, other) => one.y - other.y);
            verify(seen.length > 0);
            verify(whole.includes(seen.map(piece => piece.text).join("\n")));
            for (let i = 1; i < seen.length; ++i)
                compare(seen[i].y, seen[i - 1].y + seen[i - 1].height);
            keyClick(Qt.Key_Home);
            tryVerify(() => pieces().some(piece => piece.text.startsWith("Line 0\n") && at(piece, 0) === 0));
            bench.show(textView("Short", 2));
            tryVerify(() => pieces().length === 1 && pieces()[0].text === "Short" && at(pieces()[0], 0) === 0);
        }
        function test_showsMarkupAsItIsWritten() {
            open("<b>Bold</b> & plain");
            compare(shownText().getText(0, 100), "<b>Bold</b> & plain");
        }
        function test_breaksLongLines() {
            open("word ".repeat(400));
            verify(shownText().lineCount > 10);
            compare(scroller().contentWidth, 370);
        }
        function test_scrollsATextByKeys() {
            open(manyLines);
            host.item.forceActiveFocus();
            const end = scroller().contentHeight - 600;
            const after = key => {
                keyClick(key);
                return scroller().contentY;
            };
            verify(after(Qt.Key_Down) > 20);
            compare(after(Qt.Key_Up), 0);
            compare(after(Qt.Key_Up), 0);
            const page = after(Qt.Key_PageDown);
            verify(page > 400 && page < 600, page);
            compare(after(Qt.Key_PageUp), 0);
            compare(after(Qt.Key_End), end);
            compare(after(Qt.Key_PageDown), end);
            compare(after(Qt.Key_Home), 0);
        }
        function test_scrollsATextByWheelAndFinger() {
            open(manyLines);
            mouseWheel(scroller(), 100, 100, 0, -120);
            tryVerify(() => scroller().contentY > 0);
            keyClick(Qt.Key_Home);
            const finger = touchEvent(host.item);
            finger.press(0, host.item, 100, 500).commit();
            for (let y = 480; y >= 300; y -= 20)
                finger.move(0, host.item, 100, y).commit();
            finger.release(0, host.item, 100, 300).commit();
            tryVerify(() => scroller().contentY > 50);
            compare(bench.touches, [], "the text has its own use for the finger");
        }
        function test_doesNotScrollAShortText() {
            open("Short");
            host.item.forceActiveFocus();
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_PageDown);
            compare(scroller().contentY, 0);
        }
        function test_keepsItsPlaceWhileItIsTheSameText() {
            open(manyLines);
            host.item.forceActiveFocus();
            keyClick(Qt.Key_PageDown);
            const place = scroller().contentY;
            bench.show(textView(manyLines + "\nOne more"));
            compare(scroller().contentY, place);
            bench.show(textView(manyLines, 2));
            compare(scroller().contentY, 0);
        }
        function test_cannotBeEditedAndIsSelectedOnlyIfThePageAllowsIt() {
            open(manyLines);
            host.item.forceActiveFocus();
            keyClick(Qt.Key_X);
            compare(shownText().text, manyLines);
            keySequence(StandardKey.SelectAll);
            compare(shownText().selectedText.length, 0);
            mouseDoubleClickSequence(host.item, 40, 60);
            compare(shownText().selectedText, "");
            bench.show(textView(manyLines, 1, true));
            mouseDoubleClickSequence(host.item, 30, 40);
            compare(shownText().selectedText, "Line");
        }
        function test_tellsAssistiveToolsOfParagraphsAndWhatHeadsThem() {
            open("Lumora 1.0\n\nFonts\n• Every font is listed,\nwhether it is in use or not.\n\n• This page.\n\nAn end");
            const told = spoken(control => control.role === Accessible.Heading || control.role === Accessible.Paragraph);
            compare(told.map(control => [control.name, control.role === Accessible.Heading]), [
                ["Lumora 1.0", true], ["Fonts", true], ["• Every font is listed,", false], ["whether it is in use or not.", false],
                ["• This page.", false], ["An end", false]]);
            compare(spoken(control => control.name === ""), [], "nothing is told of the scroll bar");
        }
    }
}
