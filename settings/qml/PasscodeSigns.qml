import QtQuick
import QtQuick.Templates as T
import Lumora

// What stands at the end of a passcode's field while it is written in: whether Caps Lock is on, and an eye that shows,
// while it is held, the letters that were typed since. Others may be those of a stored passcode, and stay dots.
Row {
    id: root

    required property LineField field
    property string text: "" // of the field, as it was last looked at
    property string typed: "" // for each of its letters: "1" for a typed one, else "0"
    property var selection: ({ start: 0, end: 0 }) // the cursor's place, without one

    function forget() {
        text = field.text;
        typed = "0".repeat(text.length);
        look();
    }
    function look() {
        if (text === field.text) // or else it is of a text that is being edited
            selection = { start: field.selectionStart, end: field.selectionEnd };
    }
    // A change that is neither the replacement of the selection nor a deletion at the cursor leaves dots.
    function follow() {
        const now = field.text;
        const cursor = field.cursorPosition;
        const { start, end } = selection;
        const added = now.length - text.length + end - start;
        const kept = text.length - (now.length - cursor);
        if (added >= 0 && now.slice(0, start) + now.slice(start + added) === text.slice(0, start) + text.slice(end))
            typed = typed.slice(0, start) + "1".repeat(added) + typed.slice(end);
        else if (kept >= cursor && now === text.slice(0, cursor) + text.slice(kept))
            typed = typed.slice(0, cursor) + typed.slice(kept);
        else
            typed = "0".repeat(now.length);
        text = now;
        look();
    }

    Connections {
        target: root.field
        function onTextEdited() { root.follow() }
        function onCursorPositionChanged() { root.look() }
        function onSelectionStartChanged() { root.look() }
        function onSelectionEndChanged() { root.look() }
        function onActiveFocusChanged() { root.forget() }
    }

    Text {
        visible: root.field.activeFocus && Keyboard.capsLock
        anchors.verticalCenter: parent.verticalCenter
        rightPadding: eye.visible ? 0 : Theme.inset
        text: qsTr("Caps Lock")
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
        Accessible.ignored: !visible
    }
    T.AbstractButton {
        id: eye

        visible: root.field.activeFocus && root.typed.includes("1")
        focusPolicy: Qt.NoFocus // the field keeps it
        implicitWidth: 22 + 2 * Theme.inset
        height: root.height
        Accessible.ignored: true

        contentItem: Item {
            Rectangle {
                anchors.centerIn: parent
                width: 22
                height: 14
                radius: height / 2
                color: "transparent"
                border { width: 2; color: eye.down ? Theme.accent : Theme.secondary }
                antialiasing: true
            }
            Rectangle {
                anchors.centerIn: parent
                width: 6
                height: 6
                radius: 3
                color: eye.down ? Theme.accent : Theme.secondary
                antialiasing: true
            }
        }
    }
    Rectangle {
        parent: root.field
        visible: eye.visible && eye.down
        x: root.field.leftPadding
        y: 3
        width: root.field.width - root.field.leftPadding - root.field.rightPadding
        height: root.field.height - 2 * y
        color: Theme.cell
        clip: true

        Text {
            anchors.fill: parent
            text: parent.visible ? Array.from(root.typed, (known, i) => known === "1" ? root.text.charAt(i) : "•").join("") : ""
            textFormat: Text.PlainText
            font: root.field.font
            color: Theme.text
            horizontalAlignment: contentWidth > width ? Text.AlignRight : Text.AlignLeft
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }
}
