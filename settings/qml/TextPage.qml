import QtQuick
import QtQuick.Templates as T
import Lumora

// A text that scrolls and cannot be edited.
FocusScope {
    id: root

    required property TextModel text
    readonly property alias contentY: flick.contentY

    onTextChanged: {
        flick.cancelFlick();
        flick.contentY = 0;
    }

    Keys.onPressed: event => {
        const line = 3 * metrics.lineSpacing;
        const aPage = Math.max(line, flick.height - line);
        const targets = new Map([
            [Qt.Key_Up, flick.contentY - line], [Qt.Key_Down, flick.contentY + line],
            [Qt.Key_PageUp, flick.contentY - aPage], [Qt.Key_PageDown, flick.contentY + aPage],
            [Qt.Key_Home, 0], [Qt.Key_End, flick.contentHeight],
        ]);
        if (event.modifiers & ~Qt.KeypadModifier || !targets.has(event.key))
            return;
        flick.scrollTo(targets.get(event.key));
        event.accepted = true;
    }

    FontMetrics {
        id: metrics

        font: shown.font
    }
    Flickable {
        id: flick

        anchors.fill: parent
        contentWidth: width
        contentHeight: shown.height
        pixelAligned: true
        boundsBehavior: Flickable.DragAndOvershootBounds
        clip: true

        function scrollTo(y) {
            cancelFlick();
            contentY = Math.max(0, Math.min(contentHeight - height, y));
        }

        TextEdit {
            id: shown

            width: flick.width
            padding: 8
            focus: selectByMouse // for the keys that copy
            text: root.text?.text ?? ""
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            font.pixelSize: Theme.scaled(root.text?.size ?? 17)
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: "white"
            readOnly: true
            selectByMouse: root.text?.selectable ?? false
            activeFocusOnPress: selectByMouse
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        T.ScrollIndicator.vertical: PageScrollIndicator {}
    }
}
