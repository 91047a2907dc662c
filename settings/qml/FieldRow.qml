import QtQuick

// A text field. Hands on what was typed, if anything, at Enter and when the field or the window loses the focus.
Cell {
    id: root

    required row
    readonly property alias field: field
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

            anchors.fill: parent
            leftPadding: Theme.contentInset(root.icon)
            rightPadding: Theme.inset
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
                if (!edited && text !== root.row.text)
                    text = root.row.text;
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
                root.row.write(text);
            }

            Component.onCompleted: settle()
            onTextEdited: edited = true
            onAccepted: handOn()
            onActiveFocusChanged: {
                if (!activeFocus)
                    handOn();
                showBeginning();
            }
            Window.onActiveChanged: if (!Window.active) handOn()

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
        }
    }
}
