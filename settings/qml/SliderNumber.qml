import QtQuick
import Lumora

// The number beside a slider. A tap makes a field of it, for typing another one.
Item {
    id: root

    required property RowModel row
    required property real number
    readonly property alias label: label
    signal typed(real number)
    signal done // by key

    implicitWidth: Math.max(Theme.scaled(36), widest.advanceWidth)
    implicitHeight: label.implicitHeight

    function edit() {
        editor.active = true;
        const field = editor.item as LineField;
        field.forceActiveFocus(Qt.TabFocusReason);
        field.selectAll();
    }

    Text {
        id: label

        visible: !editor.active
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        text: root.row.shown(root.number)
        color: Theme.secondary
        font.pixelSize: Theme.detailSize
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
    TextMetrics {
        id: widest

        readonly property var ends: Array.from([root.row.minimum, root.row.maximum, root.row.number], number => root.row.shown(number))
        readonly property string longest: ends.reduce((one, other) => one.length >= other.length ? one : other)

        font: label.font
        // Zero is the widest digit. At the usual size, the room beside the number is enough for the difference.
        text: Theme.textSize > 100 ? longest.replace(/[0-9]/g, "0") : longest
    }
    MouseArea {
        anchors { fill: parent; leftMargin: -10; rightMargin: -Theme.inset }
        enabled: !editor.active
        onClicked: root.edit()
    }
    Loader {
        id: editor

        active: false
        anchors { fill: parent; leftMargin: -10; rightMargin: -10; topMargin: 5; bottomMargin: 5 }
        sourceComponent: LineField {
            id: field

            property bool edited: false

            leftPadding: 4
            rightPadding: 10
            clip: true
            text: label.text
            font.pixelSize: Theme.detailSize
            horizontalAlignment: TextInput.AlignRight
            inputMethodHints: Qt.ImhFormattedNumbersOnly
            Accessible.name: root.row.accessibleName
            background: FocusRing {}

            // Once, however it comes about.
            function end() {
                const number = Number(text.trim().replace(",", ".").replace("−", "-"));
                const counts = edited && text.trim().length > 0 && !isNaN(number);
                edited = false;
                editor.active = false;
                if (counts)
                    root.typed(number);
            }

            onTextEdited: edited = true
            onAccepted: root.done()
            onActiveFocusChanged: if (!activeFocus) end()
            // The key that has brought it may still be held.
            Keys.onReturnPressed: event => event.accepted = Keyboard.repeats()
            Keys.onEnterPressed: event => event.accepted = Keyboard.repeats()
            // The shortcut for going back would take the key first.
            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            Keys.onEscapePressed: {
                edited = false;
                root.done();
            }
        }
    }
}
