import QtQuick

// A text field. Hands on what was typed, if anything, at Enter and when the field or the window loses the focus; Escape
// takes it back.
Cell {
    id: root

    required row
    readonly property alias field: field
    readonly property Item stop: field
    readonly property bool keyboardFocus: field.focusReason === Qt.TabFocusReason || field.focusReason === Qt.BacktabFocusReason

    implicitHeight: Theme.rowHeightFor(Math.max(placeholder.implicitHeight, field.contentHeight))
    focused: field.activeFocus && keyboardFocus

    // Assistive tools see this item in place of the field, which would tell them its text even when it is secure.
    Item {
        id: spoken

        // The toolkit reads this as the text of the control.
        readonly property string text: root.row.secure ? "•".repeat(field.length) : field.text

        anchors.fill: parent
        Accessible.role: Accessible.EditableText
        Accessible.name: root.row.accessibleName
        // In words, because the toolkit leaves out the name of a control that is marked as a password.
        Accessible.description: (root.row.secure ? [qsTr("Secure")] : []).concat(root.row.accessibleDescription || []).join(". ")
        Accessible.editable: true
        Accessible.focusable: true
        Accessible.focused: field.activeFocus
        // An assistive tool puts the focus here.
        onActiveFocusChanged: if (activeFocus) field.forceActiveFocus(Qt.OtherFocusReason)

        LineField {
            id: field

            property bool edited: false
            property string settled: "" // the text before it was edited
            readonly property real start: Theme.contentInset(root.icon)
            readonly property real end: Math.max(Theme.inset, signs.width)

            anchors.fill: parent
            leftPadding: Theme.mirrored ? end : start
            rightPadding: Theme.mirrored ? start : end
            echoMode: root.row.secure ? TextInput.Password : TextInput.Normal
            passwordCharacter: "•"
            passwordMaskDelay: 0
            inputMethodHints: root.row.secure ? Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText : Qt.ImhNone
            Accessible.ignored: true

            cursorDelegate: TextCursor {
                id: cursor

                visible: field.cursorVisible

                SequentialAnimation on opacity {
                    running: cursor.visible && Theme.animated
                    loops: Animation.Infinite

                    PauseAnimation { duration: 600 }
                    PropertyAction { value: 0 }
                    PauseAnimation { duration: 400 }
                    PropertyAction { value: 1 }
                }
            }

            function settle() {
                settled = root.row.text;
                if (!edited && text !== settled)
                    restore();
                showBeginning();
            }
            // A text that is too long is seen from its beginning, unless the user is writing in it.
            function showBeginning() {
                if (!activeFocus)
                    ensureVisible(0);
            }
            function handOn() {
                if (!edited)
                    return;
                edited = false;
                settled = text;
                signs.item?.forget();
                root.row.write(text);
            }
            function restore() {
                edited = false;
                text = settled;
                signs.item?.forget();
            }

            Component.onCompleted: settle()
            onTextEdited: {
                if (!edited)
                    root.row.begin();
                edited = true;
            }
            onAccepted: handOn()
            onActiveFocusChanged: {
                if (!activeFocus)
                    handOn();
                showBeginning();
            }
            Window.onActiveChanged: if (!Window.active) handOn()
            // The shortcut for going back would take the key first.
            Keys.onShortcutOverride: event => event.accepted = edited && event.key === Qt.Key_Escape
            // Brought back, a stored passcode would be taken for a typed one.
            Keys.onPressed: event => event.accepted = root.row.secure && (event.matches(StandardKey.Undo) || event.matches(StandardKey.Redo))
            Keys.onEscapePressed: event => {
                event.accepted = edited;
                if (edited)
                    restore();
            }

            Connections {
                target: root.row
                function onValueRead() { field.settle() }
            }

            RowTitle {
                id: placeholder

                visible: field.length === 0 && field.preeditText.length === 0
                anchors { fill: parent; leftMargin: Theme.inset; rightMargin: Theme.inset }
                text: root.row.placeholder
                color: Theme.placeholder
                Accessible.ignored: true
            }
            Loader {
                id: signs

                active: root.row.secure
                anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
                sourceComponent: PasscodeSigns { field: root.field }
            }
        }
    }
}
