import QtQuick
import QtQuick.Templates as T
import Lumora

// A text that scrolls and cannot be edited. Of a long text, only the pieces around what is seen exist.
FocusScope {
    id: root

    required property TextModel text
    readonly property alias contentY: list.contentY
    readonly property alias scroller: list
    readonly property int letterSize: Theme.scaled(text?.size ?? Theme.usualSize)
    readonly property int pieceCount: text?.pieceCount ?? 0
    readonly property int margin: 8

    onTextChanged: {
        list.cancelFlick();
        list.positionViewAtBeginning();
    }

    // What begins a part of the text and is no sentence and no item of a list heads it.
    function paragraphsOf(text) {
        const lines = text.split("\n");
        let start = 0;
        return lines.map((line, i) => {
            const begins = i === 0 || lines[i - 1].trim().length === 0;
            const paragraph = { start, text: line, heads: begins && i + 1 < lines.length && !/^\s*[•*-]|[.,:;!?…]\s*$/.test(line) };
            start += line.length + 1;
            return paragraph;
        }).filter(paragraph => paragraph.text.trim().length > 0);
    }

    Keys.onPressed: event => keys.take(event)

    FontMetrics {
        id: metrics

        font.pixelSize: root.letterSize
    }
    ScrollKeys {
        id: keys

        view: list
        line: 3 * metrics.lineSpacing
        onAsked: y => list.scrollTo(y)
    }
    ListView {
        id: list

        anchors.fill: parent
        contentWidth: width
        pixelAligned: true
        boundsBehavior: Flickable.DragAndOvershootBounds
        flickDeceleration: Theme.flickDeceleration
        maximumFlickVelocity: Theme.fastestFlick
        clip: true
        keyNavigationEnabled: false
        currentIndex: -1 // which would take the focus
        focus: true
        model: root.pieceCount

        // What stands at the top, which stays there when the lines break elsewhere: a piece, and the part of it above.
        property int topPiece: 0
        property real partAbove: 0
        property real brokenAt: 0 // the width
        onContentYChanged: noteTop()
        onWidthChanged: broken.restart()
        Component.onCompleted: brokenAt = width

        Timer {
            id: broken

            interval: 0
            onTriggered: list.keepTop()
        }
        function noteTop() {
            const piece = width === brokenAt ? itemAt(0, contentY) : null;
            if (!piece)
                return;
            topPiece = indexAt(0, contentY);
            partAbove = (contentY - piece.y) / piece.height;
        }
        function keepTop() {
            forceLayout();
            const part = partAbove;
            positionViewAtIndex(topPiece, ListView.Beginning);
            forceLayout();
            const piece = itemAtIndex(topPiece);
            if (piece)
                contentY = Math.max(originY, Math.min(piece.y + part * piece.height, originY + contentHeight - height));
            brokenAt = width;
            noteTop();
        }

        // The height of pieces out of view is only estimated.
        function scrollTo(y) {
            cancelFlick();
            if (y <= originY)
                positionViewAtBeginning();
            else if (y >= originY + contentHeight - height)
                positionViewAtEnd();
            else
                contentY = y;
        }

        delegate: TextEdit {
            id: body

            required property int index

            width: list.width
            leftPadding: root.margin
            rightPadding: root.margin
            topPadding: index === 0 ? root.margin : 0
            bottomPadding: index === root.pieceCount - 1 ? root.margin : 0
            focus: selectByMouse && index === 0 // for the keys that copy
            text: index < (root.text?.pieceCount ?? 0) ? root.text.piece(index) : ""
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            font.pixelSize: root.letterSize
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.onColor
            readOnly: true
            selectByMouse: root.text?.selectable ?? false
            activeFocusOnPress: selectByMouse
            Accessible.ignored: true

            Repeater {
                model: root.pieceCount === 1 ? root.paragraphsOf(body.text) : []

                // Assistive tools are told of a short text by its paragraphs, and go from heading to heading.
                TextParagraph {
                    required property var modelData
                    // Anew when the text has been laid out for another width.
                    function placeOf(offset) { return body.width > 0 && body.contentHeight > 0 ? body.positionToRectangle(offset) : Qt.rect(0, 0, 0, 0) }
                    readonly property rect begin: placeOf(modelData.start)
                    readonly property rect end: placeOf(modelData.start + modelData.text.length)

                    y: begin.y
                    width: body.width
                    height: end.y + end.height - begin.y
                    text: modelData.text
                    heads: modelData.heads
                }
            }
        }

        T.ScrollIndicator.vertical: PageScrollIndicator {}
    }
    // Tells assistive tools the whole of a long text at once.
    TextParagraph {
        parent: list.contentItem
        y: list.originY
        width: list.width
        height: list.contentHeight
        text: root.pieceCount > 1 ? root.text.text : ""
        Accessible.ignored: root.pieceCount <= 1
    }
}
