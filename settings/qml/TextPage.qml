import QtQuick
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

    Keys.onPressed: event => flick.takeKey(event)

    FontMetrics {
        id: metrics

        font: shown.font
    }
    Scroller {
        id: flick

        anchors.fill: parent
        contentHeight: shown.height
        line: 3 * metrics.lineSpacing

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
    }
}
